/// \file
/// A time series in a text file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KESTcore/Serie.h"

namespace Kestrix {

/// The table of a text file: one row a line, numbers between white space, `#` and `//` for
/// comments.
class StandardSerie : public Serie {
 public:
  /// Reads the file. One that cannot be opened is an error of the log; lines of different length
  /// are an assertion.
  explicit StandardSerie(const std::string& fileName);

  [[nodiscard]] std::size_t size() const override { return xData.size(); }
  [[nodiscard]] double value(double x, std::size_t columnIndex) const override;
  void copyTo(Table& table) const override;

 private:
  void readLine(std::string_view numbers, const std::string& fileName, std::size_t lineNumber);

  std::vector<double> xData;               ///< first column
  std::vector<std::vector<double>> yData;  ///< one vector for each further column
  bool hasColumns_ = false;                ///< the first row has fixed the number of columns
  std::size_t colCount_ = 0;
};

}  // namespace Kestrix
