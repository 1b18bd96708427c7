#include "KESTparse/document/CheckedSeries.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/document/Codes.h"

namespace KESTparse {
namespace {

constexpr std::string_view blanks = " \t\r\v\f";

bool isFigure(char c) {
  return c >= '0' && c <= '9';
}

class SeriesCheck {
 public:
  SeriesCheck(std::string_view text, const SeriesUse& use) : text_(text), use_(&use) {}

  std::vector<PlacedFault> run(SeriesLook look) {
    if (look == SeriesLook::atEnds) {
      readEnds();
      checkWhole();
      return faults_.placed(text_);
    }
    constexpr std::string_view meshHeading = "MESH2D";
    if (text_.starts_with(meshHeading)) {
      faults_.add({code::textInSeries,
                   {0, meshHeading.size()},
                   "the file is a mesh, and no series of numbers",
                   "name the file that holds the series"});
    } else if (findForeignText(text_, faults_)) {
      for (std::size_t begin = 0; begin < text_.size();) {
        const std::size_t end = std::min(text_.find('\n', begin), text_.size());
        readLine({begin, end});
        begin = end + 1;
      }
      checkWhole();
    }
    return faults_.placed(text_);
  }

 private:
  struct Number {
    double value;
    Span at;
  };

  /// Reads the first and the last row of several.
  void readEnds() {
    for (std::size_t begin = 0; rows_ == 0 && begin < text_.size();) {
      const std::size_t end = std::min(text_.find('\n', begin), text_.size());
      readLine({begin, end});
      begin = end + 1;
    }
    for (std::size_t end = text_.size(); rows_ == 1 && end > 0;) {
      const std::size_t feed = text_.rfind('\n', end - 1);
      const std::size_t begin = feed == std::string_view::npos ? 0 : feed + 1;
      readLine({begin, end});
      end = begin == 0 ? 0 : feed;
    }
  }

  /// Reads a line as the library does, which takes the numbers at its front.
  void readLine(Span line) {
    std::string_view rest = line.in(text_);
    if (line.begin == 0 && rest.starts_with("\xef\xbb\xbf")) {
      rest.remove_prefix(3);
    }
    rest = rest.substr(0, std::min({rest.size(), rest.find('#'), rest.find("//")}));
    if (rest.find_first_not_of(blanks) == std::string_view::npos) {
      return;
    }
    hasText_ = true;
    row_.clear();
    while (true) {
      rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\v\f/"), rest.size()));
      const Extracted<double> number = extractDouble(rest);
      if (!number.ok) {
        break;
      }
      const auto begin = static_cast<std::size_t>(rest.data() - text_.data());
      row_.push_back({number.value, {begin, begin + number.consumed}});
      rest.remove_prefix(number.consumed);
      // Two numbers that touch are one word that is none.
      if (!rest.empty() && blanks.find(rest.front()) == std::string_view::npos &&
          rest.front() != '/') {
        break;
      }
    }
    if (rest.find_first_not_of(blanks) != std::string_view::npos) {
      tellText(line, rest);
    } else {
      checkRow();
    }
  }

  /// Tells of a line that holds more than numbers; `rest` begins where the numbers end.
  void tellText(Span line, std::string_view rest) {
    const auto restBegin = static_cast<std::size_t>(rest.data() - text_.data());
    std::size_t begin = restBegin;
    while (begin > line.begin && blanks.find(text_[begin - 1]) == std::string_view::npos) {
      --begin;
    }
    const std::size_t end =
        std::min(text_.find_first_of(" \t\r\v\f\n", std::max(restBegin, begin)), text_.size());
    const Span word{begin, end};
    const bool isBehindDigit = restBegin > line.begin && isFigure(text_[restBegin - 1]);
    if (isBehindDigit && (rest.front() == ',' || rest.front() == ';')) {
      tellSeparator(word, rest);
    } else if (faults_.wants(code::textInSeries)) {
      const bool isQuoted = isFigure(text_[std::min(begin + 1, text_.size() - 1)]) &&
                            (text_[begin] == '"' || text_[begin] == '\'');
      const bool isHeading = !hasRows_ && row_.empty() && !isQuoted;
      faults_.add({code::textInSeries, word,
                   isHeading ? fmt::format("the series begins with the text '{}'", word.in(text_))
                             : fmt::format("'{}' in the series is no number", word.in(text_)),
                   isHeading  ? "begin the line with '#', which makes it a comment, or remove it"
                   : isQuoted ? "write numbers without quotes"
                              : "write numbers alone; what stands behind a '#' is a comment"});
    }
    hasStrayText_ = true;
  }

  void tellSeparator(Span word, std::string_view rest) {
    if (!faults_.wants(code::seriesSeparator)) {
      return;
    }
    const bool isDecimal = rest.front() == ',' && rest.size() > 1 && isFigure(rest[1]) &&
                           std::count(word.in(text_).begin(), word.in(text_).end(), ',') == 1 &&
                           text_.find(';') == std::string_view::npos;
    const auto at = static_cast<std::size_t>(rest.data() - text_.data());
    faults_.add({code::seriesSeparator, isDecimal ? word : Span{at, at + 1},
                 isDecimal ? fmt::format("'{}' has a comma, which is no decimal mark and separates "
                                         "no columns",
                                         word.in(text_))
                           : fmt::format("'{}' stands between the numbers, where only blanks may",
                                         rest.front()),
                 isDecimal ? "write a point as the decimal mark, and blanks between the columns"
                           : "put blanks or tabs between the columns"});
  }

  void checkRow() {
    hasRows_ = true;
    if (row_.empty()) {
      return;
    }
    if (columns_ == 0) {
      columns_ = row_.size();
      firstRow_ = row_.front();
      if (use_->namesNodes) {
        checkNodes();
        return;
      }
    } else if (row_.size() != columns_) {
      if (faults_.wants(code::unequalRows)) {
        const Span at = row_.size() > columns_ ? row_[columns_].at : row_.back().at;
        faults_.add({code::unequalRows,
                     at,
                     fmt::format("the row has {} where the first one has {}", counted(row_.size()),
                                 counted(columns_)),
                     "give each row as many numbers as the first one has",
                     {{firstRow_.at, "the first row is here"}}});
      }
      return;
    }
    checkArgument();
    checkValues();
    begin_ = rows_ == 0 ? row_.front() : begin_;
    lastRow_ = row_.front();
    ++rows_;
  }

  void checkNodes() {
    if (row_.front().value != 0) {
      static_cast<void>(faults_.wants(code::rowOfNodes));
      faults_.add({code::rowOfNodes, row_.front().at,
                   fmt::format("the first row begins with {} instead of 0", row_.front().value),
                   "begin the file with a row of 0 and the numbers of the nodes that move"});
      hasForeignHead_ = true;
      return;
    }
    for (std::size_t i = 1; use_->nodes != nullptr && i < row_.size(); ++i) {
      const Extracted<int> node = extractInt(row_[i].at.in(text_));
      const bool isWhole = node.ok && node.consumed == row_[i].at.end - row_[i].at.begin;
      if ((!isWhole || use_->nodes->find(node.value) == Kestrix::MeshNodeIndex::none) &&
          faults_.wants(code::unknownNode)) {
        faults_.add({code::unknownNode, row_[i].at,
                     fmt::format("the mesh has no node {}", row_[i].at.in(text_)),
                     "name in the first row, behind the 0, nodes of the mesh that move"});
      }
    }
  }

  static std::string counted(std::size_t numbers) {
    return fmt::format("{} number{}", numbers, numbers == 1 ? "" : "s");
  }

  void checkArgument() {
    const Number& now = row_.front();
    if (rows_ > 0 && !use_->argument.empty() && !(now.value > lastRow_.value) &&
        faults_.wants(code::seriesOrder)) {
      faults_.add({code::seriesOrder,
                   now.at,
                   fmt::format("the {} {} {} does not come after {} {} in the row above",
                               use_->argument, now.value, use_->unit, lastRow_.value, use_->unit),
                   fmt::format("put the rows in the order of the {}, each once", use_->argument),
                   {{lastRow_.at, "the row above is here"}}});
    }
  }

  void checkValues() {
    for (std::size_t i = 1; i < row_.size(); ++i) {
      const double value = row_[i].value;
      if ((value >= use_->least && value <= use_->greatest) ||
          !faults_.wants(code::impossibleValue)) {
        continue;
      }
      const bool isBelow = !(value >= use_->least);
      faults_.add({code::impossibleValue, row_[i].at,
                   fmt::format("the {} {} is {} {}", use_->quantity, value,
                               isBelow ? "below" : "above", isBelow ? use_->least : use_->greatest),
                   "check the value and its sign, unit and column"});
    }
  }

  void checkWhole() {
    if (!hasText_) {
      addAtFront(code::emptySeries, "the series is empty",
                 "write a row for each time: the time, and behind it the value");
    }
    if (rows_ == 0 || hasStrayText_ || hasForeignHead_ || faults_.has(code::unequalRows)) {
      return;
    }
    if (columns_ == 1) {
      static_cast<void>(faults_.wants(code::oneColumn));
      faults_.add({code::oneColumn, firstRow_.at, "the series has one column, but needs two",
                   fmt::format("write in each row the {}, a blank, and the value",
                               use_->argument.empty() ? "argument" : use_->argument)});
      return;
    }
    if (use_->end && lastRow_.value < *use_->end && faults_.wants(code::seriesEndsEarly)) {
      faults_.add({code::seriesEndsEarly, lastRow_.at,
                   fmt::format("the series ends at {} s, but the simulation at {} s",
                               lastRow_.value, *use_->end),
                   "add rows up to there: behind the last row its values stay as they are"});
    }
    if (use_->begin && begin_.value > *use_->begin && faults_.wants(code::seriesBeginsLate)) {
      faults_.add({code::seriesBeginsLate, begin_.at,
                   fmt::format("the series begins at {} s, but the simulation at {} s",
                               begin_.value, *use_->begin),
                   "add a row for the start: in front of the first row its values hold"});
    }
  }

  void addAtFront(std::string_view code, std::string message, std::string help) {
    if (faults_.wants(code)) {
      faults_.add({code, {0, 0}, std::move(message), std::move(help)});
    }
  }

  std::string_view text_;
  const SeriesUse* use_;
  FaultList faults_;
  std::vector<Number> row_;
  std::size_t columns_ = 0;
  std::size_t rows_ = 0;  // of the length of the first
  Number firstRow_{};     // the first number of all
  Number begin_{};        // the arguments of the first and the last of these rows
  Number lastRow_{};
  bool hasText_ = false;
  bool hasRows_ = false;
  bool hasStrayText_ = false;
  bool hasForeignHead_ = false;
};

}  // namespace

std::vector<PlacedFault> checkSeries(std::string_view text, const SeriesUse& use, SeriesLook look) {
  return SeriesCheck(text, use).run(look);
}

SeriesLook neededLook(const Kestrix::Table& rows, const SeriesUse& use) {
  if (rows.size() < 2 || rows[0].size() < 2 || use.namesNodes) {
    return SeriesLook::everywhere;
  }
  bool isUsual = true;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::span<const double> row = rows[i];
    isUsual = isUsual && (i == 0 || use.argument.empty() || row[0] > rows[i - 1][0]);
    for (std::size_t k = 1; k < row.size(); ++k) {
      isUsual = isUsual && row[k] >= use.least && row[k] <= use.greatest;
    }
  }
  const double first = rows[0][0];
  const double last = rows[rows.size() - 1][0];
  const bool isCut = (use.end && last < *use.end) || (use.begin && first > *use.begin);
  return !isUsual ? SeriesLook::everywhere : isCut ? SeriesLook::atEnds : SeriesLook::nowhere;
}

}  // namespace KESTparse
