#include "KESTcore/StandardSerie.h"

#include <algorithm>
#include <utility>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/Files.h"

namespace Kestrix {
namespace {

/// Whether a line holds nothing to read.
bool isSkipped(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos || line.starts_with('#') ||
         line.starts_with("//");
}

/// The part of `line` that holds its numbers. `buffer` keeps it where it differs from the line.
std::string_view numbersOf(std::string_view line, std::string& buffer) {
  const std::string_view numbers =
      line.substr(0, std::min({line.size(), line.find('#'), line.find("//")}));
  if (numbers.find('/') == std::string_view::npos) {
    return numbers;
  }
  buffer = numbers;
  std::replace(buffer.begin(), buffer.end(), '/', ' ');
  return buffer;
}

}  // namespace

StandardSerie::StandardSerie(const std::string& fileName) {
  const KESTparse::FileText text = KESTparse::readFile(fileName);
  if (!text.wasRead) {
    KESTparse::console().endWithError(
        "Error trying to access '" + fileName +
        "' which could not be opened. Make sure, the file exists and restart the simulation.");
  }
  std::string_view rest = text.content;
  std::string buffer;
  for (std::size_t lineNumber = 1; !rest.empty(); ++lineNumber) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = rest.substr(0, end);
    if (!isSkipped(line)) {
      readLine(numbersOf(line, buffer), fileName, lineNumber);
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  KESTparse::console().show(KESTparse::level::information,
                            "StandardSerie: read " + std::to_string(xData.size()) + " rows and " +
                                std::to_string(yData.size() + 1) + " columns of data from file " +
                                fileName);
}

void StandardSerie::readLine(std::string_view numbers, const std::string& fileName,
                             std::size_t lineNumber) {
  std::string_view rest = numbers;
  std::size_t colIdx = 0;
  for (;; ++colIdx) {
    const KESTparse::Extracted<double> number = KESTparse::extractDouble(rest);
    if (!number.ok) {
      break;
    }
    rest.remove_prefix(number.consumed);
    if (!hasColumns_) {
      ++colCount_;
      yData.resize(colCount_ - 1);
    }
    ASSERT(colIdx < colCount_, "in file " << fileName << lineNumber << ": i expected a line with "
                                          << colCount_ << " numbers, but found more than that!");
    if (colIdx == 0) {
      xData.push_back(number.value);
    } else {
      ASSERT(colIdx - 1 < yData.size(),
             "colIdx - 1 < yData.size() => " << colIdx - 1 << " < " << yData.size());
      yData[colIdx - 1].push_back(number.value);
    }
  }
  hasColumns_ = true;
  ASSERT(colIdx == colCount_, "in file " << fileName << lineNumber << ": I expected a line with "
                                         << colCount_ << " numbers, but found " << colIdx
                                         << "numbers.");
}

double StandardSerie::value(double x, std::size_t columnIndex) const {
  ASSERT(columnIndex < yData.size(), "");
  const std::vector<double>& y = yData[columnIndex];
  ASSERT(!xData.empty(), "");
  if (x <= xData.front()) {
    return y.front();
  }
  if (x >= xData.back()) {
    return y.back();
  }
  std::size_t idx = 0;
  while (idx + 1 < xData.size() && xData[idx + 1] < x) {
    ++idx;
  }
  ASSERT(idx + 1 < xData.size(), "");
  const double factor = (x - xData[idx]) / (xData[idx + 1] - xData[idx]);
  ASSERT(factor >= 0.0 && factor <= 1.0, "");
  return y[idx] * (1 - factor) + y[idx + 1] * factor;
}

void StandardSerie::copyTo(Table& table) const {
  std::vector<double> numbers;
  numbers.reserve(xData.size() * (yData.size() + 1));
  for (std::size_t row = 0; row < xData.size(); ++row) {
    numbers.push_back(xData[row]);
    for (const std::vector<double>& column : yData) {
      numbers.push_back(column[row]);
    }
  }
  table = Table(yData.size() + 1, std::move(numbers));
}

}  // namespace Kestrix
