#include "set/Table.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <unordered_set>
#include <utility>

#include "KESTparse/base/Conversions.h"

namespace kcf {
namespace {

/// Reads rows one by one.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    if (rest_.starts_with(byteOrderMark)) {
      rest_.remove_prefix(byteOrderMark.size());
    }
  }

  /// Reads the next row that is not empty. \return false when there is none.
  bool read(Table::Row& row) {
    do {
      if (rest_.empty()) {
        return false;
      }
      row = {line_, {}};
      do {
        row.cells.push_back(starts('"') ? quotedField() : plainField());
      } while (takes(','));
      takeLineEnd();
    } while (row.cells.size() == 1 && row.cells.front().empty());
    return true;
  }

 private:
  [[nodiscard]] bool starts(char c) const { return rest_.starts_with(c); }

  bool takes(char c) {
    const bool isThere = starts(c);
    rest_.remove_prefix(isThere ? 1 : 0);
    return isThere;
  }

  void takeLineEnd() {
    if (starts('\r') && rest_.substr(1).starts_with('\n')) {
      rest_.remove_prefix(1);
    }
    if (!rest_.empty() && !takes('\n')) {
      refuse(line_, "text stands behind the closing quote of a field");
    }
    ++line_;
  }

  std::string plainField() {
    const std::size_t end = std::min(rest_.find_first_of(",\n"), rest_.size());
    std::string_view field = rest_.substr(0, end);
    if (field.ends_with('\r') && (end == rest_.size() || rest_[end] == '\n')) {
      field.remove_suffix(1);
    }
    if (field.find('"') != std::string_view::npos) {
      refuse(line_, "a quote stands within a field that does not begin with one");
    }
    rest_.remove_prefix(field.size());
    if (rest_ == "\r") {
      rest_ = {};
    }
    return std::string(field);
  }

  std::string quotedField() {
    const std::size_t begin = line_;
    std::string field;
    while (takes('"')) {
      const std::size_t end = rest_.find('"');
      if (end == std::string_view::npos) {
        refuse(begin, "the quote of a field is never closed");
      }
      field += rest_.substr(0, end);
      line_ += static_cast<std::size_t>(
          std::count(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
      rest_.remove_prefix(end + 1);
      if (starts('"')) {
        field += '"';
      }
    }
    return field;
  }

  [[noreturn]] static void refuse(std::size_t line, std::string_view fault) {
    throw std::runtime_error(fmt::format("line {}: {}", line, fault));
  }

  std::string_view rest_;
  std::size_t line_ = 1;
};

}  // namespace

Table readTable(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) {
    throw std::runtime_error("it is no text");
  }
  Reader reader(text);
  Table table;
  Table::Row row;
  if (!reader.read(row)) {
    throw std::runtime_error("it is empty; its first line must name the columns");
  }
  std::unordered_set<std::string> names;
  for (const std::string& cell : row.cells) {
    std::string name(KESTparse::trim(cell));
    if (name.empty()) {
      throw std::runtime_error(
          fmt::format("line {}: column {} has no name", row.line, table.columns.size() + 1));
    }
    if (!names.insert(name).second) {
      throw std::runtime_error(fmt::format("line {}: two columns are called '{}'", row.line, name));
    }
    table.columns.push_back(std::move(name));
  }
  while (reader.read(row)) {
    if (row.cells.size() != table.columns.size()) {
      throw std::runtime_error(fmt::format("line {}: there are {} fields for {} columns", row.line,
                                           row.cells.size(), table.columns.size()));
    }
    table.rows.push_back(std::move(row));
  }
  if (table.rows.empty()) {
    throw std::runtime_error("it has no rows below the names of its columns");
  }
  return table;
}

}  // namespace kcf
