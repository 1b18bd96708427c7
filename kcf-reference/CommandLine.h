/// \file
/// The command line of the program.
#pragma once

#include <string>
#include <vector>

namespace KESTparse {

/// Runs the program with its name and its arguments. The result is the exit status: 0 when all is
/// well, 1 when something is not found or fails, 2 for wrong usage.
int runReference(std::vector<std::string> arguments);

}  // namespace KESTparse
