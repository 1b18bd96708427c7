/// \file
/// The command line of the program.
#pragma once

#include <string>
#include <vector>

#include "Verb.h"

namespace kcf {

/// This program.
const Program& program();

/// Runs the program with its name and its arguments; the result is the exit status.
int run(const std::vector<std::string>& arguments);

}  // namespace kcf
