/// \file
/// The reference manual.
#pragma once

#include <filesystem>

#include "Verb.h"

namespace KESTparse {

class InputBlock;

/// Writes the manual of the schema below the master `root` as HTML pages into `folder`, which is
/// made if need be; index.html is the first page. Throws a `std::runtime_error` when a page cannot
/// be written.
void writeManual(const InputBlock& root, const std::filesystem::path& folder);

}  // namespace KESTparse

namespace kcf {

/// Writes the reference manual.
Verb manualVerb();

}  // namespace kcf
