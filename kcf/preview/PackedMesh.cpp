#include "preview/PackedMesh.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <limits>
#include <numeric>

#include "preview/Bytes.h"

namespace kcf {
namespace {

using Kestrix::Mesh;
using Corners = std::array<std::uint32_t, 4>;  // places of nodes; `none` for no fourth corner
using Point = std::array<std::int64_t, 3>;

constexpr std::uint32_t none = Kestrix::MeshNodeIndex::none;

std::size_t cornerCount(const Corners& corners) {
  return corners[3] == none ? 3 : 4;
}

/// The elements whose nodes are all there, as places in the lists of the mesh.
struct Drawable {
  std::vector<std::uint32_t> elements;
  std::vector<Corners> corners;
};

Drawable drawableOf(const Mesh& mesh, const Kestrix::MeshNodeIndex& index) {
  Drawable drawable;
  drawable.elements.reserve(mesh.corners.size());
  drawable.corners.reserve(mesh.corners.size());
  for (std::size_t e = 0; e < mesh.corners.size(); ++e) {
    Corners corners{none, none, none, none};
    const std::size_t count = mesh.corners[e][3] == Mesh::noCorner ? 3 : 4;
    bool isWhole = true;
    for (std::size_t i = 0; i < count; ++i) {
      corners[i] = index.find(mesh.corners[e][i]);
      isWhole = isWhole && corners[i] != none;
    }
    if (isWhole) {
      drawable.elements.push_back(static_cast<std::uint32_t>(e));
      drawable.corners.push_back(corners);
    }
  }
  return drawable;
}

struct Box {
  std::array<double, 3> low;
  std::array<double, 3> high;
};

Box boxOf(const Mesh& mesh) {
  constexpr double far = std::numeric_limits<double>::infinity();
  Box box{{far, far, far}, {-far, -far, -far}};
  for (const auto& node : mesh.nodes) {
    for (std::size_t k = 0; k < 3; ++k) {
      box.low[k] = std::min(box.low[k], node[k]);
      box.high[k] = std::max(box.high[k], node[k]);
    }
  }
  return mesh.nodes.empty() ? Box{{}, {}} : box;
}

// Cells of the square that the curve runs through: two to this power a side.
constexpr unsigned digitBits = 12;
constexpr std::uint32_t lowDigit = (1U << digitBits) - 1;

/// The distance along a Hilbert curve.
std::uint32_t alongCurve(std::uint32_t x, std::uint32_t y) {
  std::uint32_t d = 0;
  for (std::uint32_t s = 1U << (digitBits - 1); s > 0; s >>= 1U) {
    const std::uint32_t rx = (x & s) != 0 ? 1 : 0;
    const std::uint32_t ry = (y & s) != 0 ? 1 : 0;
    d += s * s * ((3 * rx) ^ ry);
    if (ry == 0) {
      if (rx == 1) {
        x = s - 1 - (x & (s - 1));
        y = s - 1 - (y & (s - 1));
      }
      std::swap(x, y);
    }
    x &= s - 1;
    y &= s - 1;
  }
  return d;
}

/// A place in a list and where it stands along the curve.
struct Stop {
  std::uint32_t along;
  std::uint32_t place;
};

/// Sorts by `along`, of which `2 * digitBits` bits count.
void sortStops(std::vector<Stop>& stops) {
  std::vector<Stop> sorted(stops.size());
  for (const unsigned shift : {0U, digitBits}) {
    std::vector<std::size_t> begins((1U << digitBits) + 1);
    for (const Stop& stop : stops) {
      ++begins[((stop.along >> shift) & lowDigit) + 1];
    }
    std::partial_sum(begins.begin(), begins.end(), begins.begin());
    for (const Stop& stop : stops) {
      sorted[begins[(stop.along >> shift) & lowDigit]++] = stop;
    }
    stops.swap(sorted);
  }
}

/// Puts elements that are near each other one behind the other, unless the file does so.
void order(Drawable& drawable, const Mesh& mesh, const Box& box) {
  const std::size_t count = drawable.elements.size();
  if (count < 2) {
    return;
  }
  const double width = std::max({box.high[0] - box.low[0], box.high[1] - box.low[1], 1e-9});
  const auto firstNode = [&](std::size_t i) { return mesh.nodes[drawable.corners[i][0]]; };
  constexpr std::size_t sampleSize = 20000;
  const std::size_t stride = count / sampleSize + 1;
  double way = 0;
  std::size_t steps = 0;
  for (std::size_t i = 1; i < count; i += stride, ++steps) {
    const auto from = firstNode(i - 1);
    const auto to = firstNode(i);
    way += std::abs(to[0] - from[0]) + std::abs(to[1] - from[1]);
  }
  constexpr double farApart = 16;  // in elements of a square of as many
  if (way / static_cast<double>(steps) < farApart * width / std::sqrt(static_cast<double>(count))) {
    return;
  }
  std::vector<Stop> stops(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto node = firstNode(i);
    stops[i] = {alongCurve(static_cast<std::uint32_t>((node[0] - box.low[0]) / width * lowDigit),
                           static_cast<std::uint32_t>((node[1] - box.low[1]) / width * lowDigit)),
                static_cast<std::uint32_t>(i)};
  }
  sortStops(stops);
  Drawable ordered;
  ordered.elements.reserve(count);
  ordered.corners.reserve(count);
  for (const Stop& stop : stops) {
    ordered.elements.push_back(drawable.elements[stop.place]);
    ordered.corners.push_back(drawable.corners[stop.place]);
  }
  drawable = std::move(ordered);
}

/// Lengths that positions are rounded to: a centimetre, and a millimetre of elevation; finer where
/// elements are small, coarser where the mesh is larger than integers of 31 bits can tell.
std::array<double, 3> stepsOf(const Box& box, std::size_t numElements) {
  const auto roundDown = [](double length) {
    return std::pow(10.0, std::floor(std::log10(length)));
  };
  const double width = std::max(box.high[0] - box.low[0], box.high[1] - box.low[1]);
  const double edge = width / std::sqrt(static_cast<double>(std::max<std::size_t>(numElements, 1)));
  constexpr double perEdge = 50;
  constexpr double range = 1e9;
  const double plane = edge > 0 ? std::min(0.01, roundDown(edge / perEdge)) : 0.01;
  const double height = box.high[2] - box.low[2];
  return {std::max(plane, width / range), std::max(plane, width / range),
          std::max(std::min(0.001, plane), height / range)};
}

/// How positions are foretold: from the node before, from the two before, or from the other corners
/// of the element that names the node first.
constexpr int predictions = 3;

Point foretold(int prediction, std::size_t node, std::size_t numKnown,
               const std::array<std::uint32_t, 3>& known, const std::vector<Point>& points) {
  Point point{};
  for (std::size_t k = 0; k < 3; ++k) {
    const auto at = [&points, k](std::size_t i) { return points[i][k]; };
    if (prediction == 2 && numKnown == 3) {
      point[k] = at(known[0]) - at(known[1]) + at(known[2]);
    } else if (prediction == 2 && numKnown == 2) {
      point[k] = (at(known[0]) + at(known[1])) >> 1;
    } else if (prediction == 1 && node > 1) {
      point[k] = 2 * at(node - 1) - at(node - 2);
    } else if (node > 0) {
      point[k] = at(node - 1);
    }
  }
  return point;
}

/// Of each packed node the corners of its first element that were there before it, around the
/// element from the node on.
struct Birth {
  std::uint32_t source = 0;  ///< place in the mesh
  std::uint32_t numKnown = 0;
  std::array<std::uint32_t, 3> known{};
};

class Packing {
 public:
  Packing(const Mesh& mesh, const Kestrix::MeshNodeIndex& index)
      : mesh_(&mesh), drawable_(drawableOf(mesh, index)) {}

  PackedMesh run() {
    const Box box = boxOf(*mesh_);
    order(drawable_, *mesh_, box);
    packed_.numNodes = mesh_->nodes.size();
    packed_.numElements = drawable_.elements.size();
    packed_.numLost = mesh_->corners.size() - packed_.numElements;
    packed_.step = stepsOf(box, packed_.numElements);
    for (std::size_t k = 0; k < 3; ++k) {
      packed_.origin[k] = std::floor(box.low[k]);
    }
    packed_.lowest = box.low[2];
    packed_.highest = box.high[2];
    std::future<void> materials = std::async(std::launch::async, [this] { packMaterials(); });
    packCorners();
    packNodes();
    materials.get();
    std::vector<std::future<void>> compressions;
    for (auto& stream : packed_.streams) {
      compressions.push_back(
          std::async(std::launch::async, [&stream] { stream = deflated(stream); }));
    }
    for (auto& compression : compressions) {
      compression.get();
    }
    return std::move(packed_);
  }

 private:
  void packMaterials() {
    auto& list = packed_.materials;
    std::int32_t last = 0;
    for (const std::uint32_t e : drawable_.elements) {
      const std::int32_t material = mesh_->materials[e];
      if (list.empty() || material != last) {
        const auto it = std::lower_bound(list.begin(), list.end(), material);
        if (it == list.end() || *it != material) {
          list.insert(it, material);
        }
        last = material;
      }
    }
    packed_.materialCounts.assign(list.size(), 0);
    packed_.materialAreas.assign(list.size(), 0);
    std::vector<std::uint8_t>& ids = packed_.streams[0];
    std::vector<std::uint8_t>& materials = packed_.streams[1];
    ids.reserve(drawable_.elements.size() * 2);
    materials.reserve(drawable_.elements.size());
    std::int64_t lastId = 0;
    std::size_t place = 0;
    std::int64_t lastPlace = 0;
    for (std::size_t i = 0; i < drawable_.elements.size(); ++i) {
      const std::uint32_t e = drawable_.elements[i];
      appendInteger(ids, mesh_->elementIds[e] - lastId - 1);
      lastId = mesh_->elementIds[e];
      const std::int32_t material = mesh_->materials[e];
      if (list[place] != material) {
        place = static_cast<std::size_t>(std::lower_bound(list.begin(), list.end(), material) -
                                         list.begin());
      }
      appendInteger(materials, static_cast<std::int64_t>(place) - lastPlace);
      lastPlace = static_cast<std::int64_t>(place);
      ++packed_.materialCounts[place];
      packed_.materialAreas[place] += areaOf(drawable_.corners[i]);
    }
    packed_.area = std::accumulate(packed_.materialAreas.begin(), packed_.materialAreas.end(), 0.0);
  }

  [[nodiscard]] double areaOf(const Corners& corners) const {
    const auto& a = mesh_->nodes[corners[0]];
    const auto& b = mesh_->nodes[corners[1]];
    const auto& c = mesh_->nodes[corners[2]];
    const auto& d = corners[3] == none ? a : mesh_->nodes[corners[3]];
    return std::abs((c[0] - a[0]) * (d[1] - b[1]) - (d[0] - b[0]) * (c[1] - a[1])) / 2;
  }

  void packCorners() {
    std::vector<std::uint32_t>& placeOfNode = packed_.placeOfNode;
    placeOfNode.assign(mesh_->nodes.size(), none);
    births_.reserve(mesh_->nodes.size());
    std::vector<std::uint8_t>& stream = packed_.streams[2];
    stream.reserve(drawable_.corners.size() * 6);
    for (const Corners& corners : drawable_.corners) {
      const std::size_t count = cornerCount(corners);
      for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t& place = placeOfNode[corners[i]];
        const auto next = static_cast<std::uint32_t>(births_.size());
        if (place == none) {
          births_.push_back(birth(corners, count, i));
          place = next;
          appendInteger(stream, 0);
        } else {
          appendInteger(stream, next - place);
        }
      }
      if (count == 3) {
        appendInteger(stream, -1);
      }
    }
    for (std::size_t node = 0; node < placeOfNode.size(); ++node) {
      if (placeOfNode[node] == none) {
        placeOfNode[node] = static_cast<std::uint32_t>(births_.size());
        births_.push_back({static_cast<std::uint32_t>(node), 0, {}});
      }
    }
  }

  [[nodiscard]] Birth birth(const Corners& corners, std::size_t count, std::size_t i) const {
    Birth birth{corners[i], 0, {}};
    for (std::size_t step = 1; step < count; ++step) {
      const std::uint32_t place = packed_.placeOfNode[corners[(i + step) % count]];
      if (place != none) {
        birth.known[birth.numKnown++] = place;
      }
    }
    return birth;
  }

  void packNodes() {
    std::vector<Point> points(births_.size());
    std::vector<std::uint8_t>& ids = packed_.streams[3];
    ids.reserve(births_.size() * 2);
    std::int64_t lastId = 0;
    const std::array<double, 3> perMetre{1 / packed_.step[0], 1 / packed_.step[1],
                                         1 / packed_.step[2]};
    for (std::size_t i = 0; i < births_.size(); ++i) {
      const auto& node = mesh_->nodes[births_[i].source];
      for (std::size_t k = 0; k < 3; ++k) {
        points[i][k] = std::llround((node[k] - packed_.origin[k]) * perMetre[k]);
      }
      const std::int32_t id = mesh_->nodeIds[births_[i].source];
      appendInteger(ids, id - lastId - 1);
      lastId = id;
    }
    packed_.prediction = bestPrediction(points);
    for (std::size_t k = 0; k < 3; ++k) {
      packed_.streams[4 + k].reserve(points.size() * 2);
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
      const Birth& birth = births_[i];
      const Point guess = foretold(packed_.prediction, i, birth.numKnown, birth.known, points);
      for (std::size_t k = 0; k < 3; ++k) {
        appendInteger(packed_.streams[4 + k], points[i][k] - guess[k]);
      }
    }
  }

  /// The prediction that leaves the least to tell, by a sample of nodes.
  [[nodiscard]] int bestPrediction(const std::vector<Point>& points) const {
    constexpr std::size_t sampleSize = 20000;
    const std::size_t stride = points.size() / sampleSize + 1;
    int best = 0;
    double least = std::numeric_limits<double>::infinity();
    for (int prediction = 0; prediction < predictions; ++prediction) {
      double bits = 0;
      for (std::size_t i = 0; i < points.size(); i += stride) {
        const Point guess = foretold(prediction, i, births_[i].numKnown, births_[i].known, points);
        for (std::size_t k = 0; k < 3; ++k) {
          bits += std::log2(1 + std::abs(static_cast<double>(points[i][k] - guess[k])));
        }
      }
      if (bits < least) {
        least = bits;
        best = prediction;
      }
    }
    return best;
  }

  const Mesh* mesh_;
  Drawable drawable_;
  std::vector<Birth> births_;
  PackedMesh packed_;
};

}  // namespace

PackedMesh packMesh(const Mesh& mesh, const Kestrix::MeshNodeIndex& index) {
  return Packing(mesh, index).run();
}

}  // namespace kcf
