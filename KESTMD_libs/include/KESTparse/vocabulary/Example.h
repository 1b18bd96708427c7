/// \file
/// Snippets of command files that show a block.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace KESTparse {

class InputBlock;
class InputTag;
struct Place;

/// A snippet that parses where the block at `place` may stand: the one that its class gives, if
/// that parses, or else one with all that is mandatory.
std::string exampleOf(const Place& place);

/// The tags without which a block of the master `block` is refused, each with a value that it
/// takes, such as `my_file.txt`.
std::vector<std::pair<const InputTag*, std::string>> neededTags(const InputBlock& block);

}  // namespace KESTparse
