/// \file
/// The rows of a series.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace Kestrix {

/// Rows of numbers, all of the same length, in one piece of memory that copies share.
class Table {
 public:
  Table() = default;
  /// The rows of `columns` numbers that stand one behind the other in `numbers`.
  Table(std::size_t columns, std::vector<double> numbers)
      : columns_(columns),
        numbers_(std::make_shared<const std::vector<double>>(std::move(numbers))) {}

  /// The number of rows.
  [[nodiscard]] std::size_t size() const { return empty() ? 0 : numbers_->size() / columns_; }
  [[nodiscard]] bool empty() const { return numbers_ == nullptr || numbers_->empty(); }
  [[nodiscard]] std::span<const double> operator[](std::size_t row) const {
    return std::span(*numbers_).subspan(row * columns_, columns_);
  }
  void clear() { numbers_.reset(); }

 private:
  std::size_t columns_ = 1;
  std::shared_ptr<const std::vector<double>> numbers_;
};

}  // namespace Kestrix
