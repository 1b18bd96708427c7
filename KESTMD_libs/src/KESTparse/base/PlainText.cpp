#include "KESTparse/base/PlainText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace KESTparse {
namespace {

/// The first byte from `begin` on that is not ASCII, or NUL.
std::size_t findUnusual(std::string_view text, std::size_t begin) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  constexpr std::uint64_t ones = 0x0101010101010101U;
  std::size_t at = begin;
  for (; at + sizeof(std::uint64_t) <= text.size(); at += sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, sizeof word);
    // The second part finds NUL; bytes that are not ASCII are found anyway.
    if (((word | (word - ones)) & highBits) != 0) {
      break;
    }
  }
  while (at < text.size() && static_cast<unsigned char>(text[at] - 1) < 0x7FU) {
    ++at;
  }
  return at;
}

/// The length of the code point at `at`; 0 when its bytes are not UTF-8.
std::size_t lengthAt(std::string_view text, std::size_t at) {
  const auto byte = [text, at](std::size_t i) {
    return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0U;
  };
  const unsigned first = byte(0);
  const std::size_t length = first < 0xC2U   ? 0
                             : first < 0xE0U ? 2
                             : first < 0xF0U ? 3
                             : first < 0xF5U ? 4
                                             : 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) {
      return 0;
    }
  }
  // Forms that are too long, surrogates, and what lies beyond the last code point.
  const unsigned second = byte(1);
  const bool isRefused = (first == 0xE0U && second < 0xA0U) || (first == 0xEDU && second > 0x9FU) ||
                         (first == 0xF0U && second < 0x90U) || (first == 0xF4U && second > 0x8FU);
  return isRefused ? 0 : length;
}

/// The first carriage return that is not followed by a line feed, or by others and then one.
std::size_t findLoneReturn(std::string_view text) {
  for (std::size_t at = text.find('\r'); at != std::string_view::npos; at = text.find('\r', at)) {
    const std::size_t begin = at;
    at = std::min(text.find_first_not_of('\r', at), text.size());
    if (at < text.size() && text[at] != '\n') {
      return begin;
    }
  }
  return std::string_view::npos;
}

}  // namespace

TextForm formOfText(std::string_view text) {
  TextForm form;
  form.isWide = text.starts_with("\xff\xfe") || text.starts_with("\xfe\xff");
  form.isBinary = form.isWide;
  form.hasMark = text.starts_with(utf8Mark);
  for (std::size_t at = findUnusual(text, 0); at < text.size() && !form.isBinary;
       at = findUnusual(text, at)) {
    if (text[at] == '\0') {
      form.isBinary = true;
      return form;
    }
    const std::size_t length = lengthAt(text, at);
    if (length == 0 && form.invalidByte == std::string_view::npos) {
      form.invalidByte = at;
    }
    at += std::max<std::size_t>(length, 1);
  }
  form.loneReturn = form.isBinary ? std::string_view::npos : findLoneReturn(text);
  return form;
}

bool isPlainText(std::string_view text) {
  const TextForm form = formOfText(text);
  return !form.isBinary && !form.hasMark && form.loneReturn == std::string_view::npos &&
         form.invalidByte == std::string_view::npos;
}

}  // namespace KESTparse
