/// \file
/// The rows of a series.
#pragma once

#include <span>
#include <vector>

namespace Kestrix {

/// Rows of numbers, all of the same length, in one piece of memory.
class Table {
 public:
  /// An empty table whose rows will have `columns` numbers.
  explicit Table(std::size_t columns = 0) : columns_(columns) {}

  /// The number of rows.
  [[nodiscard]] std::size_t size() const { return columns_ == 0 ? 0 : numbers_.size() / columns_; }
  [[nodiscard]] bool empty() const { return numbers_.empty(); }
  [[nodiscard]] std::span<const double> operator[](std::size_t row) const {
    return std::span(numbers_).subspan(row * columns_, columns_);
  }
  void clear() { numbers_.clear(); }
  void reserve(std::size_t rows) { numbers_.reserve(rows * columns_); }
  /// Appends the next number of the row that is being filled, or begins a row.
  void append(double number) { numbers_.push_back(number); }

  friend bool operator==(const Table&, const Table&) = default;

 private:
  std::size_t columns_;
  std::vector<double> numbers_;
};

}  // namespace Kestrix
