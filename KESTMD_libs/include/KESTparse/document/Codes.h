/// \file
/// The kinds of diagnostics by their stable names.
#pragma once

#include <string_view>

namespace KESTparse::code {

// Syntax.
inline constexpr std::string_view byteOrderMark = "byte-order-mark";
inline constexpr std::string_view notText = "not-text";
inline constexpr std::string_view notUtf8 = "not-utf-8";
inline constexpr std::string_view missingClosingBrace = "missing-closing-brace";
inline constexpr std::string_view missingOpeningBrace = "missing-opening-brace";
inline constexpr std::string_view strayClosingBrace = "stray-closing-brace";
inline constexpr std::string_view missingName = "missing-name";
inline constexpr std::string_view missingEquals = "missing-equals";
inline constexpr std::string_view strayText = "stray-text";
inline constexpr std::string_view invalidName = "invalid-name";
inline constexpr std::string_view strayParenthesis = "stray-parenthesis";
inline constexpr std::string_view unclosedList = "unclosed-list";
inline constexpr std::string_view unfinishedFile = "unfinished-file";
inline constexpr std::string_view swallowedByte = "swallowed-byte";

// Names.
inline constexpr std::string_view unknownBlock = "unknown-block";
inline constexpr std::string_view unknownTag = "unknown-tag";
inline constexpr std::string_view secondBlock = "second-block";
inline constexpr std::string_view secondTag = "second-tag";
inline constexpr std::string_view missingBlock = "missing-block";
inline constexpr std::string_view missingTag = "missing-tag";
inline constexpr std::string_view exclusiveTags = "exclusive-tags";
inline constexpr std::string_view unusedTag = "unused-tag";

// Values.
inline constexpr std::string_view missingValue = "missing-value";
inline constexpr std::string_view twoTagsOnALine = "two-tags-on-a-line";
inline constexpr std::string_view notANumber = "not-a-number";
inline constexpr std::string_view notAnInteger = "not-an-integer";
inline constexpr std::string_view outOfRange = "out-of-range";
inline constexpr std::string_view unusualValue = "unusual-value";
inline constexpr std::string_view notAChoice = "not-a-choice";
inline constexpr std::string_view notAWord = "not-a-word";
inline constexpr std::string_view notAPosition = "not-a-position";
inline constexpr std::string_view notAList = "not-a-list";
inline constexpr std::string_view listLength = "list-length";
inline constexpr std::string_view listNameTwice = "list-name-twice";

// Files and the library's own stops.
inline constexpr std::string_view missingFile = "missing-file";
inline constexpr std::string_view unreadableFile = "unreadable-file";
inline constexpr std::string_view unequalRows = "unequal-rows";
inline constexpr std::string_view stopped = "stopped";

}  // namespace KESTparse::code
