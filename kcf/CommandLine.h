/// \file
/// The command line of the program.
#pragma once

#include <string>
#include <vector>

#include "Verb.h"

namespace kcf {

/// All verbs, group by group in the order of the help.
const std::vector<Verb>& verbs();

/// Runs the program with its name and its arguments; the result is the exit status.
int run(const std::vector<std::string>& arguments);

}  // namespace kcf
