/// \file
/// The words for what the library only refuses: values, and faults of syntax.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/document/Diagnostic.h"

namespace KESTparse {

class InputBlock;
class InputTag;

/// A value that its tag refused.
struct RefusedValue {
  const InputTag& tag;       ///< the instance that refused it, or a prototype
  const InputBlock& block;   ///< the block that it stands in
  std::string_view text;     ///< the text of the command file, as it stands in the file
  Span value;                ///< the value without white space at its ends; may be empty
  Span name;                 ///< the name of the tag
  std::string_view refusal;  ///< what the library said
};

/// What is wrong with a refused value; the place is the smallest text that is wrong: an item of a
/// list, the part of the value that does not belong there.
Diagnostic explainValue(const RefusedValue& refused);

/// What is to be written as the value of the tag `prototype` of `block`, such as "a number in m".
std::string wantedValue(const InputTag& prototype, const InputBlock& block);

/// A fault of syntax.
struct FaultySyntax {
  const SyntaxTree& tree;
  const TreeFaultAt& fault;
  const InputBlock* block;  ///< the block that the faulty node stands in; null where none is known
  const LineTable& lines;   ///< of the text of the tree
};

/// What is wrong with the syntax.
Diagnostic explainSyntax(const FaultySyntax& faulty);

/// What is wrong, and how to mend it.
struct StopWords {
  std::string message;
  std::string help;
};

/// The words for a stop of the library that said `text`.
StopWords explainStop(std::string_view text);

/// Why a file cannot be opened.
struct MissingFile {
  std::string_view code;
  std::string message;
  std::string help;
  std::string meant = {};  ///< the name that must be meant, of a file that exists; or empty
};

/// What is wrong with `name`, the value of a tag, as the name of a file that cannot be opened.
MissingFile explainMissingFile(std::string_view name);

/// The names of the tags or of the sub-blocks of a block, in the order of the schema.
std::vector<std::string_view> tagNamesOf(const InputBlock& block);
std::vector<std::string_view> blockNamesOf(const InputBlock& block);

}  // namespace KESTparse
