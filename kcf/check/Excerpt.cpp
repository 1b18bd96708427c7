#include "check/Excerpt.h"

#include <clocale>
#include <cstdint>
#include <cwchar>

namespace kcf {
namespace {

constexpr std::string_view dots = "...";
constexpr std::size_t tabWidth = 4;

/// Makes the widths of characters those of Unicode as long as it lives, whatever the user's
/// language is.
class UnicodeWidths {
 public:
  UnicodeWidths() : before_(uselocale(locale())) {}
  UnicodeWidths(const UnicodeWidths&) = delete;
  UnicodeWidths& operator=(const UnicodeWidths&) = delete;
  ~UnicodeWidths() { uselocale(before_); }

  /// In columns; negative for what cannot be shown. Where the system does not know, it is one.
  static int of(char32_t value) {
    return value < 0x80 || locale() == nullptr ? 1 : wcwidth(static_cast<wchar_t>(value));
  }

 private:
  static locale_t locale() {
    static const locale_t shared = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return shared;
  }
  locale_t before_;
};

char32_t codePoint(std::string_view bytes) {
  const auto first = static_cast<unsigned char>(bytes[0]);
  char32_t value = bytes.size() == 1 ? first : first & (0x7fU >> bytes.size());
  for (const char next : bytes.substr(1)) {
    value = (value << 6U) | (static_cast<unsigned char>(next) & 0x3fU);
  }
  return value;
}

/// Whether a character has no shape of its own but changes how others are shown.
bool isInvisible(char32_t value) {
  return (value >= 0x80 && value < 0xa0) || value == 0xad || value == 0x61c ||
         (value >= 0x200b && value <= 0x200f) || (value >= 0x2028 && value <= 0x202e) ||
         (value >= 0x2060 && value <= 0x206f) || value == 0xfeff ||
         (value >= 0xe0000 && value <= 0xe0fff);
}

struct Shown {
  std::string text;
  std::size_t width = 1;
};

/// How one code point, or one invalid byte, is shown.
Shown shownOf(std::string_view bytes, bool isValid) {
  constexpr std::string_view replacement = "\xef\xbf\xbd";
  const char32_t value = isValid ? codePoint(bytes) : 0;
  if (!isValid || isInvisible(value)) {
    return {std::string(replacement)};
  }
  if (value == '\t') {
    return {std::string(tabWidth, ' '), tabWidth};
  }
  if (value < 0x20 || value == 0x7f) {
    // The pictures of control characters.
    const char last = static_cast<char>(value == 0x7f ? 0xa1 : 0x80 + value);
    return {std::string("\xe2\x90") + last};
  }
  const int width = UnicodeWidths::of(value);
  return width < 0 ? Shown{std::string(replacement)}
                   : Shown{std::string(bytes), static_cast<std::size_t>(width)};
}

/// Takes the code point at the front of `text`.
Shown take(std::string_view& text) {
  bool isValid = true;
  const std::size_t length = KESTparse::codePointLength(text, isValid);
  Shown shown = shownOf(text.substr(0, length), isValid);
  text.remove_prefix(length);
  return shown;
}

/// The start of the code point that ends in front of `at`.
std::size_t stepBack(std::string_view text, std::size_t at) {
  constexpr std::size_t longest = 4;
  for (std::size_t length = 2; length <= longest && length <= at; ++length) {
    bool isValid = true;
    if (KESTparse::codePointLength(text.substr(at - length, length), isValid) == length) {
      return at - length;
    }
  }
  return at - 1;
}

/// Shows `line` from `from` on, up to about `columns`.
Excerpt excerptFrom(std::string_view line, std::size_t from, KESTparse::Span at,
                    std::size_t columns) {
  Excerpt excerpt{.text = from == 0 ? "" : std::string(dots), .width = 0};
  std::size_t width = excerpt.text.size();
  excerpt.indent = width;
  std::string_view rest = line.substr(from);
  while (!rest.empty()) {
    const std::size_t place = line.size() - rest.size();
    const Shown shown = take(rest);
    if (width + shown.width + (rest.empty() ? 0 : dots.size()) > columns) {
      excerpt.text += dots;
      break;
    }
    excerpt.text += shown.text;
    width += shown.width;
    excerpt.indent += place < at.begin ? shown.width : 0;
    excerpt.width += place >= at.begin && place < at.end ? shown.width : 0;
  }
  excerpt.width = std::max<std::size_t>(excerpt.width, 1);
  return excerpt;
}

}  // namespace

std::string harmless(std::string_view text) {
  const UnicodeWidths widths;
  std::string result;
  while (!text.empty()) {
    result += take(text).text;
  }
  return result;
}

Excerpt excerptOf(std::string_view line, KESTparse::Span at, std::size_t columns) {
  const UnicodeWidths widths;
  // What stands in front of the place may take half of the room.
  std::size_t from = at.begin;
  std::size_t room = columns / 2;
  while (from > 0 && room > 0) {
    const std::size_t before = stepBack(line, from);
    std::string_view character = line.substr(before, from - before);
    const std::size_t width = take(character).width;
    if (width > room) {
      break;
    }
    room -= width;
    from = before;
  }
  return excerptFrom(line, from, at, columns);
}

}  // namespace kcf
