/// \file
/// Comments that silence warnings.
#pragma once

#include <vector>

#include "KESTparse/document/Diagnostic.h"

namespace KESTparse {

/// Takes the warnings out of `diagnostics` that a comment `// kcf: allow CODE` silences: one behind
/// the tag or block header that they are about, or on lines of its own right above it. Adds a
/// warning for each code that silences nothing.
void silenceWarnings(const SyntaxTree& tree, const LineTable& lines,
                     std::vector<Diagnostic>& diagnostics);

}  // namespace KESTparse
