/// \file
/// Skeletons of command files.
#pragma once

#include <iosfwd>
#include <vector>

#include "Verb.h"

namespace KESTparse {

class InputBlock;
struct Place;

/// Writes a command file with the blocks at `places` below the master `root` and the mandatory
/// blocks within them: mandatory tags with the placeholder `?`, all others commented out. A
/// repeatable block stands there as often as it is named.
void writeTemplate(const InputBlock& root, const std::vector<Place>& places, std::ostream& out);

}  // namespace KESTparse

namespace kcf {

/// Prints a skeleton.
Verb templateVerb();

}  // namespace kcf
