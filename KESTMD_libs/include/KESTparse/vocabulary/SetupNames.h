/// \file
/// What the names of a setup lead to.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "KESTparse/vocabulary/Names.h"

namespace KESTparse {

class InputBlock;
class InputTag;

/// The names that one tag of the table defines within one block of a setup, with the tags that
/// define them.
struct DefinedNames {
  std::unordered_map<std::string_view, const InputTag*> tags;  ///< the first of each name
  std::vector<std::string_view> inOrder;                       ///< as they stand in the file
};

/// The names among which one must be.
struct KnownNames {
  /// Whether it is known where they are defined: false where the region is not there, or the block
  /// that would hold them.
  bool isKnown = false;
  std::vector<const DefinedNames*> tables;

  /// The tag that defines `name`; null when none does.
  [[nodiscard]] const InputTag* find(std::string_view name, bool ignoresCase = false) const;
  [[nodiscard]] std::vector<std::string_view> all() const;
};

/// Follows the names of a setup by the table of `Names.h`. The setup must not change meanwhile.
class SetupNames {
 public:
  /// \param root of the setup.
  explicit SetupNames(const InputBlock& root) : root_(&root) {}

  /// The path of `block` in the schema, "" for the root.
  const std::string& pathOf(const InputBlock& block) { return rowsOf(block).path; }
  /// Whether tags of the class of `block` name something.
  bool namesSomething(const InputBlock& block);
  /// The rows of the table for `tag`, an instance; those that its block has no use for are left
  /// out.
  const std::vector<const Naming*>& namingsOf(const InputTag& tag);
  /// The names that `tag` may give by the row `naming`, which is not one for parts of meshes.
  const KnownNames& namesFor(const Naming& naming, const InputTag& tag);
  /// The tag that names the mesh to which the parts belong that `tag` gives by the row `naming`;
  /// null when that is not known.
  const InputTag* meshFor(const Naming& naming, const InputTag& tag);
  /// The row of the table for `tag` as one that defines names; null when it defines none.
  const DefiningTag* definitionsIn(const InputTag& tag);

 private:
  using Scopes = std::vector<const InputBlock*>;

  struct TagRows {
    std::vector<const Naming*> namings;
    const DefiningTag* defining = nullptr;
  };
  /// What the table says of a block class at one place.
  struct BlockRows {
    std::string path;
    std::vector<TagRows> tags;  ///< by their places in the schema
    bool hasNamings = false;
  };

  const BlockRows& rowsOf(const InputBlock& block);
  const TagRows& rowsOf(const InputTag& tag);
  /// The regions at `path` that have that name.
  const Scopes& regionsNamed(std::string_view path, std::string_view name);
  /// The blocks within which `defined` counts for `tag`, and how long their paths are.
  std::pair<Scopes, std::size_t> scopesOf(const Naming& naming, const InputTag& tag,
                                          const DefiningTag& defined);
  const DefinedNames* namesWithin(const InputBlock& scope, std::size_t pathLength,
                                  const DefiningTag& defined);

  const InputBlock* root_;
  std::unordered_map<const InputBlock*, BlockRows> rows_;  // by masters
  std::map<std::string_view, std::unordered_map<std::string_view, Scopes>> regions_;
  std::map<std::pair<const InputBlock*, const DefiningTag*>, DefinedNames> tables_;
  std::map<std::pair<std::vector<const InputBlock*>, const Naming*>, KnownNames> known_;
  std::vector<const Naming*> used_;
};

}  // namespace KESTparse
