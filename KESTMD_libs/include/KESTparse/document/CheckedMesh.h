/// \file
/// What is wrong in a mesh, and what other files may name in it.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "KESTcore/Mesh.h"
#include "KESTparse/document/FileFaults.h"

namespace KESTparse {

/// A mesh file that was looked at. It keeps no coordinates: some 4 bytes a node and an element.
struct CheckedMesh {
  std::vector<PlacedFault> faults;
  Kestrix::MeshNodeIndex nodes;                        ///< by their numbers
  Kestrix::MeshNodeIndex elements;                     ///< by their numbers
  std::pair<std::int32_t, std::int32_t> nodeRange;     ///< the lowest and the highest number
  std::pair<std::int32_t, std::int32_t> elementRange;  ///< the lowest and the highest number
  std::vector<std::int32_t> materials;                 ///< each once, in order
};

/// Checks the mesh in `text`: that elements and node strings lead to nodes, and lie as elements can
/// lie. Takes a time linear in the size of the text.
std::shared_ptr<const CheckedMesh> checkMesh(std::string_view text);
/// The same of a mesh that was read from `text` with its places.
std::shared_ptr<const CheckedMesh> checkMesh(std::string_view text, const Kestrix::Mesh& mesh);

}  // namespace KESTparse
