#include "language-server/Framing.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <system_error>

namespace kcf::server {
namespace {

constexpr std::string_view endOfHeader = "\r\n\r\n";
constexpr std::string_view endOfField = "\r\n";

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [lower](char x, char y) { return lower(x) == lower(y); });
}

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  return begin == std::string_view::npos
             ? std::string_view()
             : text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

}  // namespace

void FrameReader::append(std::string_view bytes) {
  if (fault_.empty()) {
    bytes_.append(bytes);
  }
}

std::optional<std::string> FrameReader::next() {
  if (!fault_.empty() || (!isInBody_ && !readHeader()) || bytes_.size() - at_ < *length_) {
    return std::nullopt;
  }
  std::string message = bytes_.substr(at_, *length_);
  bytes_.erase(0, at_ + *length_);
  at_ = 0;
  searched_ = 0;
  length_.reset();
  isInBody_ = false;
  return message;
}

/// \return whether the header is there, whole and understood.
bool FrameReader::readHeader() {
  const std::size_t from = searched_ - std::min(searched_, endOfHeader.size());
  const std::size_t end = bytes_.find(endOfHeader, from);
  searched_ = bytes_.size();
  if (std::min(end, bytes_.size()) > longestHeader) {
    fault_ = fmt::format("a header is longer than {} bytes", longestHeader);
  }
  if (end == std::string::npos || !fault_.empty()) {
    return false;
  }
  std::string_view header = std::string_view(bytes_).substr(0, end);
  while (!header.empty() && fault_.empty()) {
    const std::size_t stop = std::min(header.find(endOfField), header.size());
    readField(header.substr(0, stop));
    header.remove_prefix(std::min(stop + endOfField.size(), header.size()));
  }
  if (fault_.empty() && !length_) {
    fault_ = "a header has no 'Content-Length'";
  }
  at_ = end + endOfHeader.size();
  isInBody_ = fault_.empty();
  return isInBody_;
}

void FrameReader::readField(std::string_view field) {
  const std::size_t colon = field.find(':');
  if (colon == std::string_view::npos) {
    fault_ = "a line of a header has no colon";
    return;
  }
  if (!equalsIgnoringCase(trimmed(field.substr(0, colon)), "Content-Length")) {
    return;
  }
  const std::string_view value = trimmed(field.substr(colon + 1));
  std::size_t length = 0;
  const auto [stop, error] = std::from_chars(value.data(), value.data() + value.size(), length);
  if (error != std::errc{} || stop != value.data() + value.size()) {
    fault_ = "the 'Content-Length' of a header is no length";
  } else if (length > longestMessage) {
    fault_ = fmt::format("a message is longer than {} bytes", longestMessage);
  } else if (length_ && *length_ != length) {
    fault_ = "a header has two lengths";
  } else {
    length_ = length;
  }
}

std::string framed(std::string_view message) {
  return fmt::format("Content-Length: {}\r\n\r\n{}", message.size(), message);
}

}  // namespace kcf::server
