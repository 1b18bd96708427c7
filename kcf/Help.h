/// \file
/// What a program and its verbs say of themselves.
#pragma once

#include <string>
#include <vector>

#include "Verb.h"

namespace kcf {

/// The verbs that the help lists.
std::vector<const Verb*> shownVerbs(const Program& program);

/// How the operands and options are written behind the name, such as "[--output DIR] [PATH...]".
std::string synopsis(const std::vector<Option>& options);

/// The ways to write an option, such as "-o, --output DIR"; the name of an operand.
std::string spelling(const Option& option);

/// The options and operands of a verb, and `--help`, which all verbs have.
std::vector<Option> allOptions(const Verb& verb);

/// Fits a screen.
std::string helpOf(const Program& program);
std::string helpOf(const Program& program, const Verb& verb);

}  // namespace kcf
