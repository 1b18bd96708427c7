/// \file
/// How a text is encoded, and how its lines end.
#pragma once

#include <cstddef>
#include <string_view>

namespace KESTparse {

/// What some editors put in front of a text in UTF-8.
inline constexpr std::string_view utf8Mark = "\xef\xbb\xbf";

/// What keeps programs from reading a text.
struct TextForm {
  bool isBinary = false;  ///< holds bytes that no text has; nothing else is then told
  bool isWide = false;    ///< is in UTF-16
  bool hasMark = false;   ///< begins with a byte order mark
  std::size_t loneReturn = std::string_view::npos;   ///< the first carriage return that ends a line
  std::size_t invalidByte = std::string_view::npos;  ///< the first that is not UTF-8
};

TextForm formOfText(std::string_view text);

/// Whether `text` has nothing of that.
bool isPlainText(std::string_view text);

}  // namespace KESTparse
