/// \file
/// A series of a text file, made small for the page.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kcf {

/// A table whose first column is the argument. Rows are as long as the first one.
struct Series {
  std::vector<std::vector<double>> columns;
  std::size_t oddLine = 0;  ///< the first line that is no row of it, from 1; 0 when there is none

  [[nodiscard]] std::size_t size() const { return columns.empty() ? 0 : columns[0].size(); }
};

/// Reads rows of numbers between white space; `#` and `//` begin comments. A line that does not fit
/// is left out.
Series readSeries(std::string_view text);

/// The rows to draw when at most about `limit` of them can be: of each stretch the first, the
/// last, and for each column the lowest and the highest, so that no peak is lost.
std::vector<std::size_t> rowsToDraw(const Series& series, std::size_t limit);

}  // namespace kcf
