/// \file
/// The files that a setup names.
#pragma once

#include <set>
#include <string>

namespace KESTparse {
class InputBlock;
class InputTag;
}  // namespace KESTparse

namespace kcf {

/// Whether the value of a tag names a file.
bool namesFile(const KESTparse::InputTag& tag);

/// What the tags below `root` name, as it stands there; defaults are among it.
std::set<std::string> namedFiles(const KESTparse::InputBlock& root);

}  // namespace kcf
