#include "language-server/Text.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace kcf::server {
namespace {

using KESTparse::Span;

/// Adds where lines begin behind the line ends in `span`.
void findStarts(std::string_view text, Span span, std::vector<std::uint32_t>& starts) {
  for (std::size_t at = span.begin; at < span.end;) {
    at = text.find_first_of("\r\n", at);
    if (at >= span.end) {
      return;
    }
    const bool isPair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
    at += isPair ? 2 : 1;
    starts.push_back(static_cast<std::uint32_t>(at));
  }
}

/// How far a byte moves a place along its line.
std::size_t unitsOf(char byte, Encoding encoding) {
  constexpr unsigned continuationMask = 0xC0;
  constexpr unsigned continuation = 0x80;
  constexpr unsigned fourBytes = 0xF0;
  const auto value = static_cast<unsigned char>(byte);
  if (encoding == Encoding::utf8) {
    return 1;
  }
  return ((value & continuationMask) == continuation ? 0U : 1U) + (value >= fourBytes ? 1U : 0U);
}

std::size_t unitsIn(std::string_view text, Encoding encoding) {
  if (encoding == Encoding::utf8) {
    return text.size();
  }
  std::size_t units = 0;
  for (const char c : text) {
    units += unitsOf(c, encoding);
  }
  return units;
}

}  // namespace

Lines::Lines(std::string_view text) : starts_{0} {
  findStarts(text, {0, text.size()}, starts_);
}

void Lines::update(std::string_view changed, Span replaced, std::size_t length) {
  // A carriage return in front and a line feed behind may become, or have been, one line end.
  const std::size_t from = replaced.begin == 0 ? 0 : replaced.begin - 1;
  const auto first = std::upper_bound(starts_.begin(), starts_.end(), from);
  const auto last = std::upper_bound(first, starts_.end(), replaced.end + 1);
  const std::size_t moved = length - replaced.size();  // may wrap, and wraps back
  std::for_each(last, starts_.end(), [moved](std::uint32_t& start) {
    start = static_cast<std::uint32_t>(start + moved);
  });
  std::vector<std::uint32_t> fresh;
  const std::size_t end = std::min(changed.size(), replaced.begin + length + 1);
  findStarts(changed, {*(first - 1), end}, fresh);
  // A pair at the end reaches one byte further, where the next line already begins.
  if (last != starts_.end() && !fresh.empty() && fresh.back() == *last) {
    fresh.pop_back();
  }
  const auto common = std::min(fresh.size(), static_cast<std::size_t>(last - first));
  std::copy_n(fresh.begin(), common, first);
  const auto rest = first + static_cast<std::ptrdiff_t>(common);
  if (rest != last) {
    starts_.erase(rest, last);
  } else {
    starts_.insert(last, fresh.begin() + static_cast<std::ptrdiff_t>(common), fresh.end());
  }
}

std::size_t Lines::lineOf(std::size_t offset) const {
  const auto behind = std::upper_bound(starts_.begin(), starts_.end(), offset);
  return static_cast<std::size_t>(behind - starts_.begin()) - 1;
}

Span Lines::line(std::string_view text, std::size_t number) const {
  const std::size_t begin = starts_[number];
  std::size_t end = number + 1 < starts_.size() ? starts_[number + 1] : text.size();
  while (end > begin && (text[end - 1] == '\n' || text[end - 1] == '\r')) {
    --end;
  }
  return {begin, end};
}

std::size_t Lines::offsetAt(std::string_view text, Position at, Encoding encoding) const {
  if (at.line >= starts_.size()) {
    return text.size();
  }
  const Span whole = line(text, at.line);
  if (encoding == Encoding::utf8) {
    return whole.begin + std::min(at.character, whole.size());
  }
  std::size_t units = 0;
  std::size_t offset = whole.begin;
  while (offset < whole.end && units < at.character) {
    units += unitsOf(text[offset], encoding);
    ++offset;
    while (offset < whole.end && unitsOf(text[offset], encoding) == 0) {
      ++offset;
    }
  }
  return offset;
}

Position Lines::positionAt(std::string_view text, std::size_t offset, Encoding encoding) const {
  const std::size_t number = lineOf(std::min(offset, text.size()));
  const Span whole = line(text, number);
  const std::size_t end = std::clamp(offset, whole.begin, whole.end);
  return {number, unitsIn(text.substr(whole.begin, end - whole.begin), encoding)};
}

Text::Text(std::string content) : content_(std::move(content)), lines_(content_) {
  if (content_.size() >= UINT32_MAX) {
    throw std::length_error("a command file must be smaller than 4 GB");
  }
}

void Text::replace(Span at, std::string_view text) {
  content_.replace(at.begin, at.size(), text);
  lines_.update(content_, at, text.size());
}

}  // namespace kcf::server
