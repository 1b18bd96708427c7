/// \file
/// What the rules of block classes say. The build reads it in the sources of the classes.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/framework/Message.h"

namespace KESTparse {

class InputBlock;

/// A rule of a block class. Sentences hold `{0}` and the like in place of values.
struct RuleFacts {
  std::string_view blockClass;  ///< without its namespace
  std::string_view name;        ///< stable; a rule with several sentences is there for each
  Severity severity;
  std::string_view members;   ///< bound to the tags that it is about, separated by blanks
  std::string_view sentence;  ///< what is wrong
  std::string_view help;      ///< how to mend it
  std::string_view text;      ///< as the converter shows it; empty or "{}" where that differs
};

/// The rules of all classes, class by class, by their names.
std::span<const RuleFacts> allRules();

/// The rules of the class of `block`.
std::span<const RuleFacts> rulesOf(const InputBlock& block);

/// The code of a rule of the blocks with that keyword, such as "external-source/missing-file".
std::string ruleCode(std::string_view keyword, std::string_view rule);

/// A sentence of a rule with dots in place of its values.
std::string withoutValues(std::string_view sentence);

}  // namespace KESTparse
