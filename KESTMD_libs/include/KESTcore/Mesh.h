/// \file
/// A mesh of triangles and quadrangles, as it stands in a `.2dm` file.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrix {

/// A node string: nodes in their order along a line through the mesh.
struct MeshString {
  std::string name;                   ///< empty when the file gives none
  std::vector<std::int32_t> nodeIds;  ///< as in the file, the sign of the last one taken off
  std::size_t place = 0;              ///< offset of its (last) line in the text
};

/// A node on a side of an element or within it.
struct MeshSideNode {
  std::uint32_t element = 0;  ///< place among the elements
  std::int32_t nodeId = 0;
};

/// A line that is begun as one of the known cards but cannot be read as one.
struct MeshFault {
  std::size_t place = 0;  ///< offset of the line in the text
};

/// What a mesh file holds, in the order of the file. Nothing is checked but that numbers are
/// numbers: ids may have gaps, come twice or lead nowhere.
struct Mesh {
  /// The fourth corner of a triangle; no node id.
  static constexpr std::int32_t noCorner = INT32_MIN;

  std::vector<std::int32_t> nodeIds;
  std::vector<std::array<double, 3>> nodes;  ///< x, y and elevation [m]
  std::vector<std::int32_t> elementIds;
  std::vector<std::array<std::int32_t, 4>> corners;  ///< node ids around each element
  std::vector<std::int32_t> materials;               ///< of each element
  std::vector<MeshSideNode> sideNodes;               ///< what elements name besides their corners
  std::vector<MeshString> strings;
  std::vector<MeshFault> faults;
  // Offsets of the lines in the text, only where they were asked for.
  std::vector<std::size_t> nodePlaces;
  std::vector<std::size_t> elementPlaces;
};

/// Reads the mesh in `text`: nodes (`ND`), elements (`E3T`, `E4Q`, and by their corners `E6T`,
/// `E8Q` and `E9Q`) and node strings (`NS`, over as many lines as they need). Other cards are
/// skipped. With `withPlaces` the offset of each node's and element's line is kept, from which
/// `meshPosition` works out where it stands. Takes a time linear in the size of the text.
Mesh readMesh(std::string_view text, bool withPlaces = false);

/// Line and column of an offset in a text, both counted from 1.
struct MeshPosition {
  std::size_t line = 1;
  std::size_t column = 1;
};
MeshPosition meshPosition(std::string_view text, std::size_t offset);

/// Finds nodes by their ids. Of two nodes with one id the first is found.
class MeshNodeIndex {
 public:
  static constexpr std::uint32_t none = UINT32_MAX;

  explicit MeshNodeIndex(std::span<const std::int32_t> ids);

  /// The place of the node in the list of ids; `none` when no node has that id.
  [[nodiscard]] std::uint32_t find(std::int32_t id) const {
    const auto place = static_cast<std::uint64_t>(id - first_);
    if (place < count_) {
      return places_.empty() ? static_cast<std::uint32_t>(place) : places_[place];
    }
    return sorted_.empty() ? none : findSorted(id);
  }

 private:
  [[nodiscard]] std::uint32_t findSorted(std::int32_t id) const;

  std::int64_t first_ = 0;
  std::uint64_t count_ = 0;            ///< ids from `first_` on, where they lie densely
  std::vector<std::uint32_t> places_;  ///< of each of them; empty where they follow each other
  /// Pairs of id and place, sorted, where they do not.
  std::vector<std::pair<std::int32_t, std::uint32_t>> sorted_;
};

}  // namespace Kestrix
