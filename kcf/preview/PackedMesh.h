/// \file
/// A mesh made small for the page.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KESTcore/Mesh.h"

namespace kcf {

/// A mesh as the page reads it. Nodes are numbered as the elements name them first, elements stand
/// in the order of the file, or along a curve through the plane where neighbours are far apart in
/// the file. Each stream is a list of integers: small ones take a byte.
struct PackedMesh {
  std::size_t numNodes = 0;
  std::size_t numElements = 0;  ///< those that can be drawn
  std::size_t numLost = 0;      ///< elements that name a node which is not there
  std::array<double, 3> origin{};
  std::array<double, 3> step{};  ///< lengths of the integer 1 along x, y and z [m]
  int prediction = 0;            ///< how positions are told from those before; see `mesh.js`
  double lowest = 0;             ///< elevations [m]
  double highest = 0;
  double area = 0;                                   ///< of all elements [m2]
  std::vector<std::int32_t> materials;               ///< that occur, ascending
  std::vector<std::size_t> materialCounts;           ///< elements of each
  std::vector<double> materialAreas;                 ///< of each [m2]
  std::array<std::vector<std::uint8_t>, 7> streams;  ///< ids, materials, corners, node ids, x, y, z
  /// The place of each node of the file among the packed ones.
  std::vector<std::uint32_t> placeOfNode;
};

PackedMesh packMesh(const Kestrix::Mesh& mesh, const Kestrix::MeshNodeIndex& index);

}  // namespace kcf
