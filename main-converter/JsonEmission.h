/// \file
/// The document of a validated setup as a JSON value. `DocumentWriter` writes its text.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace KESTparse {

class InputBlock;
class InputTag;

/// What is done at each node of a walk over an actual tree. `path` holds the names from the root to
/// the node, its own included.
struct TreeCallbacks {
  std::function<void(const InputBlock&, const std::vector<std::string>& path,
                     nlohmann::json* target)>
      block;
  std::function<void(const InputTag&, const std::vector<std::string>& path, nlohmann::json* target)>
      tag;
};

/// The callbacks that give each block an object and each tag its value.
TreeCallbacks jsonCallbacks();

/// Walks the tags and then the sub-blocks of `root`, depth first. A node becomes a key of `target`,
/// and an element of an array under that key if it is repeatable.
void walkTree(const InputBlock& root, std::vector<std::string>& path, nlohmann::json& target,
              const TreeCallbacks& callbacks);

/// The document of a walked tree: its domain without the block `PARALLEL`, and the title of the
/// project.
nlohmann::json buildDocument(nlohmann::json walked);

/// The document of the tree below `root`, as a value for programs that go on with it.
nlohmann::json documentOf(const InputBlock& root);

}  // namespace KESTparse
