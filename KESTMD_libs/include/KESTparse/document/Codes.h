/// \file
/// The kinds of diagnostics by their stable names.
#pragma once

#include <span>
#include <string_view>

#include "KESTparse/document/Diagnostic.h"

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

// What stands behind names.
inline constexpr std::string_view unknownName = "unknown-name";
inline constexpr std::string_view unknownMaterial = "unknown-material";
inline constexpr std::string_view unlistedMaterial = "unlisted-material";

// Meshes.
inline constexpr std::string_view emptyMesh = "empty-mesh";
inline constexpr std::string_view unreadableMeshLine = "unreadable-mesh-line";
inline constexpr std::string_view secondNode = "second-node";
inline constexpr std::string_view unknownNode = "unknown-node";
inline constexpr std::string_view repeatedNode = "repeated-node";
inline constexpr std::string_view flatElement = "flat-element";
inline constexpr std::string_view turnedElement = "turned-element";
inline constexpr std::string_view sharedPlace = "shared-place";
inline constexpr std::string_view idleNode = "idle-node";

// Series.
inline constexpr std::string_view emptySeries = "empty-series";
inline constexpr std::string_view textInSeries = "text-in-series";
inline constexpr std::string_view seriesSeparator = "series-separator";
inline constexpr std::string_view oneColumn = "one-column";
inline constexpr std::string_view seriesOrder = "series-order";
inline constexpr std::string_view seriesEndsEarly = "series-ends-early";
inline constexpr std::string_view seriesBeginsLate = "series-begins-late";
inline constexpr std::string_view impossibleValue = "impossible-value";
inline constexpr std::string_view rowOfNodes = "row-of-nodes";

// Encodings and line ends.
inline constexpr std::string_view foreignEncoding = "foreign-encoding";
inline constexpr std::string_view foreignLineEnds = "foreign-line-ends";

// Comments that silence warnings.
inline constexpr std::string_view silencesNothing = "silences-nothing";

}  // namespace KESTparse::code

namespace KESTparse {

/// What is told of a kind of diagnostics as such.
struct CodeFacts {
  std::string_view name;
  std::string_view group;  ///< the heading under which the codes are listed
  Severity severity = Severity::error;
  Origin origin = Origin::converter;
  std::string_view summary;  ///< one line, without a full stop
  std::string_view meaning;  ///< a paragraph
  std::string_view example;  ///< a piece of a file that has it; empty where none shows it
  std::string_view mended;   ///< the same without it

  /// What `example` is a piece of, such as "a mesh"; empty for a command file.
  [[nodiscard]] std::string_view exampleOf() const {
    return group == "Meshes" ? "a mesh" : group == "Series" ? "a series" : "";
  }
};

/// The kinds of diagnostics that are no rules of blocks, group by group.
std::span<const CodeFacts> codeFacts();

/// Null for an unknown name.
const CodeFacts* findCode(std::string_view name);

}  // namespace KESTparse
