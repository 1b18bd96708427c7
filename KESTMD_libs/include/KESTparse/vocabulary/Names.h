/// \file
/// Which tags name what other tags, or meshes, define.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace KESTparse {

/// The part of a value that is a name.
enum class NamePart : std::uint8_t {
  whole,     ///< the value
  items,     ///< each item of a list
  ends,      ///< both numbers of each item `1:2` of a list
  region,    ///< of a position `region.place` what stands in front of the dot
  place,     ///< of a position what stands behind the dot
  listName,  ///< of `name:( 1 2 3 )` what stands in front of the colon
};

/// What stands behind a name.
enum class NamedThing : std::uint8_t {
  tagValue,    ///< the value of a tag, or an item of it
  nodeString,  ///< a node string of the mesh that a tag names
  node,        ///< a node of that mesh, by its number
  element,     ///< an element of that mesh, by its number
  material,    ///< a material of that mesh, by its number
};

/// Where the tag that defines a name is looked for.
enum class NameScope : std::uint8_t {
  shared,       ///< in the innermost block that may hold both
  inFront,      ///< in the region that stands in front of the dot of a position
  plane,        ///< in the region that the tag `kestplane` beside it names
  ofInterface,  ///< in the region that the COUPLING above names for that side; see `regionTagOf`
};

/// A tag whose value, or each item of it, is a name that others use; or that names a mesh.
struct DefiningTag {
  std::string_view block;  ///< path in the schema
  std::string_view tag;
  NamePart part = NamePart::whole;
};

/// Tags of a block whose values name something. A tag may stand in several rows: a position names
/// a region and a place in it, and a value may be looked for in several ways.
struct Naming {
  std::string_view block;                ///< path in the schema
  std::string_view tags;                 ///< separated by blanks
  std::string_view noun;                 ///< what is named, in the words of the file: "MIXTURE"
  std::span<const DefiningTag> defined;  ///< the tags that define it, or name the mesh that does
  NamePart part = NamePart::whole;
  NamedThing thing = NamedThing::tagValue;
  NameScope scope = NameScope::shared;
  std::string_view onlyForType = {};  ///< the value of the tag `type` for which the row holds
  bool ignoresCase = false;           ///< whether letter case counts
  bool isTable = false;               ///< of materials: those left out take a default

  /// Whether no simulation can do without what is named; a table of materials may be made for more
  /// meshes than the one at hand.
  [[nodiscard]] bool isNeeded() const { return thing != NamedThing::material; }
};

/// All tags of the vocabulary that name something.
std::span<const Naming> allNamings();

/// The rows for the tag `tag` of the block at `path`, which is one of the schema.
std::vector<const Naming*> namingsOf(std::string_view path, std::string_view tag);

/// The tag of the block at `path` as one that defines names; null when it defines none.
const DefiningTag* definingTag(std::string_view path, std::string_view tag);

/// The paths of the blocks whose names the tag `tag` of the block at `path` takes; parts of a mesh
/// are in none.
std::vector<std::string> blocksNamedBy(std::string_view path, std::string_view tag);

/// The tag that names the region in which `tag` is looked for, by its path from the block of
/// `tag`: "../upstream_subdomain" for `upstream_interface`, `tag` itself where the region stands in
/// front of its dot. Empty for a name that is looked for in the block that holds both.
std::string regionTagOf(const Naming& naming, std::string_view tag);

/// The path of the innermost block that holds both the blocks at `path` and at that of `defined`,
/// such as "/DOMAIN/KESTPLANE_2D"; names count within one instance of it.
std::string_view sharedBlock(std::string_view path, const DefiningTag& defined);

/// A name within a value.
struct NameInValue {
  std::size_t begin;  ///< in bytes
  std::size_t end;    ///< excluded

  [[nodiscard]] std::string_view in(std::string_view value) const {
    return value.substr(begin, end - begin);
  }
};

/// The names that stand in `value`, which may hold blanks at its ends, comments excluded.
std::vector<NameInValue> namesIn(std::string_view value, NamePart part);

}  // namespace KESTparse
