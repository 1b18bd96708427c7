/// \file
/// Tables of comma-separated values.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kcf {

/// The rows of a table by the rules of RFC 4180.
struct Table {
  struct Row {
    std::size_t line = 1;  ///< on which it begins, counted from 1
    std::vector<std::string> cells;
  };

  std::vector<std::string> columns;  ///< without blanks at their ends
  std::vector<Row> rows;             ///< each with a cell for each column
};

/// Reads a table whose first row names its columns: fields may stand in quotes and then hold
/// commas, line ends and doubled quotes; lines end with or without a carriage return, empty ones
/// are left out, and so is a byte order mark. Throws a `std::runtime_error` that names the line
/// where `text` is no such table.
Table readTable(std::string_view text);

}  // namespace kcf
