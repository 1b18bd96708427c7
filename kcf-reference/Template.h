/// \file
/// Skeletons of command files.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace KESTparse {

class InputBlock;

/// The master at `path` below the master `root`, "/" for the root itself; null when there is none.
const InputBlock* findMaster(const InputBlock& root, const std::string& path);

/// The known paths that are most like `path`, the likeliest first.
std::vector<std::string> nearestPaths(const InputBlock& root, const std::string& path);

/// Writes a command file with the blocks at `paths` and the mandatory blocks within them: mandatory
/// tags with the placeholder `?`, all others commented out. The paths exist.
void writeTemplate(const InputBlock& root, const std::vector<std::string>& paths,
                   std::ostream& out);

}  // namespace KESTparse
