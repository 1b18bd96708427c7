#include <algorithm>

#include "KESTparse/document/SyntaxTree.h"

namespace KESTparse {

std::size_t codePointLength(std::string_view text, bool& isValid) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  isValid = true;
  if (first < 0x80) {
    return 1;
  }
  std::size_t length = 0;
  unsigned char lowest = 0x80;
  unsigned char highest = 0xbf;
  if (first >= 0xc2 && first <= 0xdf) {
    length = 2;
  } else if ((first & 0xf0) == 0xe0) {
    length = 3;
    lowest = first == 0xe0 ? 0xa0 : 0x80;
    highest = first == 0xed ? 0x9f : 0xbf;
  } else if (first >= 0xf0 && first <= 0xf4) {
    length = 4;
    lowest = first == 0xf0 ? 0x90 : 0x80;
    highest = first == 0xf4 ? 0x8f : 0xbf;
  }
  bool fits = length != 0 && length <= text.size() && byte(1) >= lowest && byte(1) <= highest;
  for (std::size_t i = 2; fits && i < length; ++i) {
    fits = (byte(i) & 0xc0) == 0x80;
  }
  isValid = fits;
  return fits ? length : 1;
}

std::size_t countCodePoints(std::string_view text) {
  std::size_t count = 0;
  while (!text.empty()) {
    bool isValid = true;
    text.remove_prefix(codePointLength(text, isValid));
    ++count;
  }
  return count;
}

LineTable::LineTable(std::string_view text) : text_(text) {
  // Columns in long lines are counted from milestones, so that each is found in bounded time.
  constexpr std::size_t milestoneDistance = 4096;
  for (std::size_t begin = 0;;) {
    starts_.push_back(begin);
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::uint32_t column = 1;
    for (std::size_t at = begin; end - at > milestoneDistance; ++column) {
      bool isValid = true;
      at += codePointLength(text.substr(at), isValid);
      const std::size_t last = milestones_.empty() ? 0 : milestones_.back().at;
      if (at - std::max(last, begin) >= milestoneDistance) {
        milestones_.push_back({at, column + 1});
      }
    }
    if (end == text.size()) {
      return;
    }
    begin = end + 1;
  }
}

LineColumn LineTable::at(std::size_t offset) const {
  const std::size_t place = std::min(offset, text_.size());
  const auto next = std::upper_bound(starts_.begin(), starts_.end(), place);
  Milestone from{*(next - 1), 1};
  const auto milestone = std::upper_bound(
      milestones_.begin(), milestones_.end(), place,
      [](std::size_t wanted, const Milestone& known) { return wanted < known.at; });
  if (milestone != milestones_.begin() && (milestone - 1)->at >= from.at) {
    from = *(milestone - 1);
  }
  return {static_cast<std::uint32_t>(next - starts_.begin()),
          static_cast<std::uint32_t>(countCodePoints(text_.substr(from.at, place - from.at))) +
              from.column};
}

Span LineTable::line(std::uint32_t number) const {
  const std::size_t begin = starts_[number - 1];
  const std::size_t end = number < starts_.size() ? starts_[number] - 1 : text_.size();
  return {begin, end};
}

}  // namespace KESTparse
