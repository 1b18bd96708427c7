/// \file
/// The places of blocks in the schema, and how they are found.
#pragma once

#include <string>
#include <vector>

namespace KESTparse {

class InputBlock;

/// A place in the schema. "/" is the path of the root.
struct Place {
  const InputBlock* block;
  std::string path;
};

/// All places below and including the master `root`, depth first in the order of the schema.
std::vector<Place> placesOf(const InputBlock& root);

/// The path of the sub-block `child` of the block at `parent`.
std::string pathOf(const std::string& parent, const InputBlock& child);

/// The place at `path` below the master `root`, its path in the usual form; slashes at the ends of
/// `path` do not matter. The block is null when there is none.
Place findPlace(const InputBlock& root, const std::string& path);

/// The places whose paths end with the names of `path`, as KESTPLANE_2D/GEOMETRY does of a path;
/// only the one at `path` when there is one.
std::vector<Place> findPlaces(const InputBlock& root, const std::string& path);

/// How often a block stands in its parent, in words.
std::string occurrence(const InputBlock& block);

/// The known paths that are most like `path`, the likeliest first. The last names of a path are as
/// good a hint as the whole of it, and case does not matter.
std::vector<std::string> nearestPaths(const InputBlock& root, const std::string& path);

}  // namespace KESTparse
