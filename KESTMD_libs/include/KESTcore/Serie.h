/// \file
/// Tables over an argument, such as values over time.
#pragma once

#include <cstddef>

#include "KESTcore/Table.h"

namespace Kestrix {

/// A table of numbers whose first column is the argument.
class Serie {
 public:
  virtual ~Serie() = default;
  /// The number of rows.
  [[nodiscard]] virtual std::size_t size() const = 0;
  /// The value of a column (0 is the first behind the argument) at `x`, linear between the rows and
  /// constant outside of them. A column that does not exist is an assertion.
  [[nodiscard]] virtual double value(double x, std::size_t columnIndex) const = 0;
  /// Replaces `table` by the rows, the argument first.
  virtual void copyTo(Table& table) const = 0;
};

}  // namespace Kestrix
