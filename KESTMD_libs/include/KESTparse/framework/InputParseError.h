/// \file
/// The error that stops the reading of a command file.
#pragma once

#include <string>
#include <utility>

namespace KESTparse {

/// What is wrong with a command file.
enum class ParseErrorKind : unsigned {
  endOfFile = 0,             ///< text left over or invalid state at the end of the file
  unknownBlock = 1,          ///< the parent has no block of this name
  unknownTag = 2,            ///< the block has no tag of this name
  secondBlock = 3,           ///< second instance of a block that does not repeat
  secondTag = 4,             ///< second instance of a tag that does not repeat
  misplacedBrace = 5,        ///< closing brace at the wrong place
  emptyBlockName = 6,        ///< opening brace without a name
  emptyTagName = 7,          ///< equals sign without a name
  whiteSpaceInName = 8,      ///< a name that goes on behind white space
  invalidNameCharacter = 9,  ///< a character that no name has
  tagValue = 10,             ///< a value that its tag refuses
};

/// A fault in a command file, thrown by the parser, the lookups and the tags.
struct InputParseError {
  unsigned code;        ///< a `ParseErrorKind` as a number
  std::string message;  ///< what is wrong
  int line = -1;        ///< line in the file; -1 as long as it is not known

  InputParseError(ParseErrorKind kind, std::string text)
      : code(static_cast<unsigned>(kind)), message(std::move(text)) {}
};

}  // namespace KESTparse
