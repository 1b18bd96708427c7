/// \file
/// Snippets of command files that show a block.
#pragma once

#include <string>

namespace KESTparse {

struct Place;

/// A snippet that parses where the block at `place` may stand: the one that its class gives, if
/// that parses, or else one with all that is mandatory.
std::string exampleOf(const Place& place);

}  // namespace KESTparse
