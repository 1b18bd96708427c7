/// \file
/// The document that is made of a validated setup.
#pragma once

#include <functional>
#include <iosfwd>
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

/// Walks `root` as `walkTree` does with the callbacks above, and gives each block's memory back
/// once it has been walked: a large setup need not stand in memory beside its document. Nothing but
/// its destruction may follow for `root`.
nlohmann::json takeApart(InputBlock& root);

/// The document of a walked tree: its domain without the block `PARALLEL`, and the title of the
/// project.
nlohmann::json buildDocument(nlohmann::json walked);

/// Throws the exception of the library if a text of `document` is no UTF-8, which cannot be
/// printed.
void requireUtf8(const nlohmann::json& document);

/// Prints `document`, whose texts are UTF-8, to `out` with an indent of 2 and characters as they
/// are.
void print(const nlohmann::json& document, std::ostream& out);

}  // namespace KESTparse
