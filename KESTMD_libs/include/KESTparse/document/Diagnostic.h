/// \file
/// What is wrong with a command file, where it is, and how to mend it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/document/SyntaxTree.h"
#include "KESTparse/framework/Message.h"

namespace KESTparse {

/// Who finds it: the converter refuses it or warns of it, or only the checker knows.
enum class Origin : std::uint8_t { converter, checker };

/// A place in the command file, or in a file that it names.
struct TextPlace {
  Span at;                   ///< in the command file
  std::string file = {};     ///< path of another file; empty for the command file
  std::uint32_t line = 0;    ///< in that file, counted from 1
  std::uint32_t column = 0;  ///< in that file, in code points, counted from 1
  std::uint32_t endColumn = 0;
};

/// Another place that matters, and why.
struct Related {
  TextPlace at;
  std::string message;  ///< such as "the first is here"
};

/// Text that stands in place of other text of the command file.
struct Edit {
  Span at;
  std::string text;
};

/// Edits that mend it for certain.
struct Fix {
  std::string message;  ///< what they do, such as "write 'default_friction'"
  std::vector<Edit> edits;
};

struct Diagnostic {
  Severity severity = Severity::error;
  Origin origin = Origin::converter;
  std::string code;     ///< see `Codes.h`; of a rule `block/rule`
  TextPlace at;         ///< the smallest text that is wrong
  std::string message;  ///< one sentence, lower case, without a full stop
  std::string help;     ///< how to mend it
  std::vector<Related> related = {};
  std::vector<Fix> fixes = {};
};

}  // namespace KESTparse
