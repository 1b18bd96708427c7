/// \file
/// The manual: guide, reference and examples.
#pragma once

#include <filesystem>

#include "Verb.h"

namespace KESTparse {
class KestrixInputRoot;
}

namespace kcf {

/// Writes the manual of the schema below the master `root` as HTML pages into `folder`, which is
/// made if need be; index.html is the first page. Throws a `std::runtime_error` when a page cannot
/// be written.
void writeManual(const KESTparse::KestrixInputRoot& root, const std::filesystem::path& folder);

/// Writes the manual.
Verb manualVerb();

}  // namespace kcf
