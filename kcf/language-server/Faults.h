/// \file
/// What is wrong with a file, and how it is mended, as the client takes it.
#pragma once

#include <nlohmann/json.hpp>

#include "language-server/Snapshot.h"

namespace kcf::server {

/// The diagnostics of the file. Throws `KESTparse::Cancelled`.
json diagnosticsOf(Snapshot& file);
/// The fixes of what is wrong in `range`, and one that applies all that are certain. `context` is
/// that of the request.
json codeActions(Snapshot& file, KESTparse::Span range, const json& context);
/// The edits that bring the lines of `range` into the one style; null for a file with faults of
/// syntax.
json formattingOf(Snapshot& file, KESTparse::Span range);

}  // namespace kcf::server
