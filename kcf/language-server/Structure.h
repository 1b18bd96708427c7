/// \file
/// What follows from the structure of a file alone.
#pragma once

#include <nlohmann/json.hpp>

#include "language-server/Snapshot.h"

namespace kcf::server {

/// Blocks and tags, one within the other; of a large file only the blocks.
json documentSymbols(Snapshot& file);
/// Blocks, and comments and lists of several lines.
json foldingRanges(Snapshot& file);
/// Around each position the value, the tag, and the blocks outwards.
json selectionRanges(Snapshot& file, const json& positions);
/// The files that tags name, as far as they exist.
json documentLinks(Snapshot& file);
/// The units behind values.
json inlayHints(Snapshot& file, KESTparse::Span range);
/// The names of the kinds of tokens, in the order of their numbers.
json tokenTypes();
json semanticTokens(Snapshot& file, KESTparse::Span range);

}  // namespace kcf::server
