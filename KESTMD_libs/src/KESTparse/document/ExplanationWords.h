/// \file
/// What the words for values and for syntax share.
#pragma once

#include <string>
#include <string_view>

namespace KESTparse {

/// `text` between single quotes, on one line and cut where it is long.
std::string quotedText(std::string_view text);

/// The white space in front of the line that holds the byte at `at`.
std::string_view indentationAt(std::string_view text, std::size_t at);

/// `text` without white space at its ends, line feeds included.
std::string_view trimmed(std::string_view text);

}  // namespace KESTparse
