/// \file
/// The one style of command files.
#pragma once

#include <string>
#include <vector>

#include "KESTparse/document/Diff.h"
#include "KESTparse/document/SyntaxTree.h"

namespace KESTparse {

class InputBlock;

/// The text of `tree`, which must have no faults, in the style of `docs/format.md`: what it says to
/// the converter is the same. `root` is the master of the schema; a list is laid out anew where it
/// knows the tag and takes the value.
std::string formatted(const SyntaxTree& tree, const InputBlock& root);

/// The edits that format the lines of `range` alone, in order.
std::vector<Edit> formatEdits(const SyntaxTree& tree, const InputBlock& root, Span range);

}  // namespace KESTparse
