#include "preview/Series.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "KESTparse/base/PlainNumbers.h"

namespace kcf {
namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

/// Reads the numbers of a line. False when something else stands there.
bool readRow(std::string_view line, std::vector<double>& row) {
  row.clear();
  const char* here = line.data();
  const char* const end = here + line.size();
  while (true) {
    while (here != end && isBlank(*here)) {
      ++here;
    }
    if (here == end || *here == '#' || (*here == '/' && here + 1 != end && here[1] == '/')) {
      return true;
    }
    here += *here == '+' ? 1 : 0;
    double value = 0;
    const char* stop = KESTparse::readPlainNumber(here, end, value);
    if (stop == nullptr || (stop != end && !isBlank(*stop))) {
      const auto [other, error] = std::from_chars(here, end, value);
      if (error != std::errc{} || !(value - value == 0)) {
        return false;
      }
      stop = other;
    }
    row.push_back(value);
    here = stop;
  }
}

}  // namespace

Series readSeries(std::string_view text) {
  Series series;
  std::vector<double> row;
  for (std::size_t line = 1, begin = 0; begin < text.size(); ++line) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const bool isRow = readRow(text.substr(begin, end - begin), row);
    begin = end + 1;
    if (isRow && row.empty()) {
      continue;
    }
    if (series.columns.empty() && isRow) {
      series.columns.resize(row.size());
    }
    if (!isRow || row.size() != series.columns.size()) {
      series.oddLine = series.oddLine == 0 ? line : series.oddLine;
      continue;
    }
    for (std::size_t i = 0; i < row.size(); ++i) {
      series.columns[i].push_back(row[i]);
    }
  }
  return series;
}

std::vector<std::size_t> rowsToDraw(const Series& series, std::size_t limit) {
  const std::size_t size = series.size();
  std::vector<std::size_t> rows;
  const std::size_t perStretch = 2 * series.columns.size();
  if (size <= limit || limit < perStretch) {
    rows.resize(size);
    for (std::size_t i = 0; i < size; ++i) {
      rows[i] = i;
    }
    return rows;
  }
  const std::size_t stretches = std::max<std::size_t>(limit / perStretch, 1);
  for (std::size_t s = 0; s < stretches; ++s) {
    const std::size_t begin = size * s / stretches;
    const std::size_t end = size * (s + 1) / stretches;
    const std::size_t before = rows.size();
    rows.push_back(begin);
    rows.push_back(end - 1);
    for (std::size_t c = 1; c < series.columns.size(); ++c) {
      const auto& column = series.columns[c];
      const auto first = column.begin();
      const auto [low, high] = std::minmax_element(first + static_cast<std::ptrdiff_t>(begin),
                                                   first + static_cast<std::ptrdiff_t>(end));
      rows.push_back(static_cast<std::size_t>(low - first));
      rows.push_back(static_cast<std::size_t>(high - first));
    }
    std::sort(rows.begin() + static_cast<std::ptrdiff_t>(before), rows.end());
    rows.erase(std::unique(rows.begin() + static_cast<std::ptrdiff_t>(before), rows.end()),
               rows.end());
  }
  return rows;
}

}  // namespace kcf
