#include "preview/PackedMesh.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <limits>
#include <numeric>

#include "KESTcore/LargeLists.h"
#include "preview/Bytes.h"

namespace kcf {
namespace {

using Kestrix::Mesh;
using Kestrix::reserveLarge;
using Corners = std::array<std::uint32_t, 4>;  // places of nodes; `none` for no fourth corner
using Point = std::array<std::int32_t, 3>;

/// Integers that positions are at most, so that what a prediction misses fits into 32 bits.
constexpr double range = 5e8;

constexpr std::uint32_t none = Kestrix::MeshNodeIndex::none;

std::size_t cornerCount(const Corners& corners) {
  return corners[3] == none ? 3 : 4;
}

/// Lets the machine fetch what a loop reads a little later, where it reads here and there.
template <class T>
void fetch(const T& value) {
  __builtin_prefetch(&value);
}
constexpr std::size_t ahead = 16;  // steps of such a loop

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

double widthOf(const Box& box) {
  return std::max(box.high[0] - box.low[0], box.high[1] - box.low[1]);
}

// Cells of the square that a curve runs through: two to this power a side.
constexpr unsigned cellBits = 10;
constexpr std::uint32_t cellCount = 1U << (2 * cellBits);

/// The distance of a cell along a Hilbert curve.
std::uint32_t alongCurve(std::uint32_t x, std::uint32_t y) {
  std::uint32_t d = 0;
  for (std::uint32_t s = 1U << (cellBits - 1); s > 0; s >>= 1U) {
    const std::uint32_t rx = (x & s) != 0 ? 1 : 0;
    const std::uint32_t ry = (y & s) != 0 ? 1 : 0;
    d += s * s * ((3 * rx) ^ ry);
    if (ry == 0) {
      // Turned without a branch, which nothing could foretell.
      const std::uint32_t mirror = (s - 1) & (0U - rx);
      const std::uint32_t turned = x ^ mirror;
      x = y ^ mirror;
      y = turned;
    }
  }
  return d;
}

/// Lengths that positions are rounded to: a centimetre, and a millimetre of elevation; finer where
/// elements are small, coarser where the mesh is larger than integers of 32 bits can tell.
std::array<double, 3> stepsOf(const Box& box, std::size_t numElements) {
  const auto roundDown = [](double length) {
    return std::pow(10.0, std::floor(std::log10(length)));
  };
  const double width = widthOf(box);
  const double edge = width / std::sqrt(static_cast<double>(std::max<std::size_t>(numElements, 1)));
  constexpr double perEdge = 50;
  const double plane = edge > 0 ? std::min(0.01, roundDown(edge / perEdge)) : 0.01;
  const double height = box.high[2] - box.low[2];
  return {std::max(plane, width / range), std::max(plane, width / range),
          std::max(std::min(0.001, plane), height / range)};
}

/// The corners of an element that were there before one of its nodes, around the element from that
/// node on.
struct Known {
  std::uint32_t count = 0;
  std::array<std::uint32_t, 3> places{};
};

/// How positions are foretold: from the node before, from the two before, or from the other corners
/// of the element that names the node first.
constexpr int predictions = 3;

std::array<std::int64_t, 3> foretold(int prediction, std::size_t node, const Known& known,
                                     const std::vector<Point>& points) {
  std::array<std::int64_t, 3> guess{};
  for (std::size_t k = 0; k < 3; ++k) {
    const auto at = [&points, k](std::size_t i) { return std::int64_t{points[i][k]}; };
    if (prediction == 2 && known.count == 3) {
      guess[k] = at(known.places[0]) - at(known.places[1]) + at(known.places[2]);
    } else if (prediction == 2 && known.count == 2) {
      guess[k] = (at(known.places[0]) + at(known.places[1])) >> 1;
    } else if (prediction == 1 && node > 1) {
      guess[k] = 2 * at(node - 1) - at(node - 2);
    } else if (node > 0) {
      guess[k] = at(node - 1);
    }
  }
  return guess;
}

class Packing {
 public:
  Packing(const Mesh& mesh, const Kestrix::MeshNodeIndex& index) : mesh_(&mesh), index_(&index) {}

  PackedMesh run() {
    packed_.numNodes = mesh_->nodes.size();
    const Box box = boxOf(*mesh_);
    packed_.step = stepsOf(box, mesh_->corners.size());
    for (std::size_t k = 0; k < 3; ++k) {
      const bool isFine = packed_.step[k] * range < 1;
      packed_.origin[k] = isFine ? box.low[k] : std::floor(box.low[k]);
    }
    packed_.lowest = box.low[2];
    packed_.highest = box.high[2];
    packCorners(orderOf(box));
    packed_.numElements = elements_.size();
    packed_.numLost = mesh_->corners.size() - packed_.numElements;
    std::vector<std::future<void>> others;
    const auto begin = [&others](auto task) {
      others.push_back(std::async(std::launch::async, task));
    };
    begin([this] { compress(2); });
    begin([this] { packNodeIds(); });
    gatherPoints();
    begin([this] { packMaterials(); });
    packNodes();
    for (auto& other : others) {
      other.get();
    }
    return std::move(packed_);
  }

 private:
  void compress(std::size_t stream) { packed_.streams[stream] = deflated(packed_.streams[stream]); }

  /// The place in the mesh of the first corner of an element; `none` when it is not there.
  [[nodiscard]] std::uint32_t firstNode(std::size_t element) const {
    return index_->find(mesh_->corners[element][0]);
  }

  /// Whether elements that follow each other in the file lie far apart, by a sample.
  [[nodiscard]] bool isScattered(double width) const {
    const std::size_t count = mesh_->corners.size();
    constexpr std::size_t sampleSize = 20000;
    const std::size_t stride = count / sampleSize + 1;
    double way = 0;
    double steps = 0;
    for (std::size_t i = 1; i < count; i += stride) {
      const std::uint32_t from = firstNode(i - 1);
      const std::uint32_t to = firstNode(i);
      if (from != none && to != none) {
        way += std::abs(mesh_->nodes[to][0] - mesh_->nodes[from][0]) +
               std::abs(mesh_->nodes[to][1] - mesh_->nodes[from][1]);
        ++steps;
      }
    }
    constexpr double farApart = 16;  // in elements of a square of as many
    return way * std::sqrt(static_cast<double>(count)) > farApart * width * steps;
  }

  /// The elements in an order in which neighbours stand near each other; empty when they do so in
  /// the file.
  [[nodiscard]] std::vector<std::uint32_t> orderOf(const Box& box) const {
    const double width = std::max(widthOf(box), 1e-9);
    if (!isScattered(width)) {
      return {};
    }
    const double scale = ((1U << cellBits) - 1) / width;
    std::vector<std::uint32_t> cellOfNode;
    reserveLarge(cellOfNode, mesh_->nodes.size());
    for (const auto& node : mesh_->nodes) {
      cellOfNode.push_back(alongCurve(static_cast<std::uint32_t>((node[0] - box.low[0]) * scale),
                                      static_cast<std::uint32_t>((node[1] - box.low[1]) * scale)));
    }
    std::vector<std::uint32_t> cells;
    cells.reserve(mesh_->corners.size());
    std::vector<std::uint32_t> begins;
    reserveLarge(begins, cellCount + 1);
    begins.resize(cellCount + 1);
    for (std::size_t e = 0; e < mesh_->corners.size(); ++e) {
      const std::uint32_t later = firstNode(std::min(e + ahead, mesh_->corners.size() - 1));
      if (later != none) {
        fetch(cellOfNode[later]);
      }
      const std::uint32_t node = firstNode(e);
      cells.push_back(node == none ? 0 : cellOfNode[node]);
      ++begins[cells.back() + 1];
    }
    std::partial_sum(begins.begin(), begins.end(), begins.begin());
    std::vector<std::uint32_t> order(cells.size());
    for (std::size_t e = 0; e < cells.size(); ++e) {
      order[begins[cells[e]]++] = static_cast<std::uint32_t>(e);
    }
    return order;
  }

  void packCorners(const std::vector<std::uint32_t>& order) {
    const std::size_t count = mesh_->corners.size();
    reserveLarge(packed_.placeOfNode, mesh_->nodes.size());
    packed_.placeOfNode.assign(mesh_->nodes.size(), none);
    sources_.reserve(mesh_->nodes.size());
    elements_.reserve(count);
    corners_.reserve(count);
    packed_.streams[2].reserve(count * 6);
    for (std::size_t i = 0; i < count; ++i) {
      if (i + 2 * ahead < order.size()) {
        fetch(mesh_->corners[order[i + 2 * ahead]]);
        for (const std::int32_t id : mesh_->corners[order[i + ahead]]) {
          const std::uint32_t node = index_->find(id);
          if (node != none) {
            fetch(packed_.placeOfNode[node]);
          }
        }
      }
      packElement(order.empty() ? static_cast<std::uint32_t>(i) : order[i]);
    }
    for (std::size_t node = 0; node < packed_.placeOfNode.size(); ++node) {
      if (packed_.placeOfNode[node] == none) {
        packed_.placeOfNode[node] = static_cast<std::uint32_t>(sources_.size());
        sources_.push_back(static_cast<std::uint32_t>(node));
      }
    }
  }

  /// Nodes are numbered as they are named first. An element that names a node which is not there is
  /// left out.
  void packElement(std::uint32_t element) {
    const auto& ids = mesh_->corners[element];
    const std::size_t count = ids[3] == Mesh::noCorner ? 3 : 4;
    Corners corners{none, none, none, none};
    for (std::size_t i = 0; i < count; ++i) {
      corners[i] = index_->find(ids[i]);
      if (corners[i] == none) {
        return;
      }
    }
    std::vector<std::uint8_t>& stream = packed_.streams[2];
    for (std::size_t i = 0; i < count; ++i) {
      std::uint32_t& place = packed_.placeOfNode[corners[i]];
      const auto next = static_cast<std::uint32_t>(sources_.size());
      if (place == none) {
        sources_.push_back(corners[i]);
        place = next;
        appendInteger(stream, 0);
      } else {
        appendInteger(stream, next - place);
      }
      corners[i] = place;
    }
    if (count == 3) {
      appendInteger(stream, -1);
    }
    elements_.push_back(element);
    corners_.push_back(corners);
  }

  /// Puts the rounded positions in the order of the packed nodes.
  void gatherPoints() {
    const std::array<double, 3> perMetre{1 / packed_.step[0], 1 / packed_.step[1],
                                         1 / packed_.step[2]};
    points_.reserve(sources_.size());
    for (std::size_t i = 0; i < sources_.size(); ++i) {
      fetch(mesh_->nodes[sources_[std::min(i + ahead, sources_.size() - 1)]]);
      const auto& node = mesh_->nodes[sources_[i]];
      Point point{};
      for (std::size_t k = 0; k < 3; ++k) {
        point[k] =
            static_cast<std::int32_t>(std::lrint((node[k] - packed_.origin[k]) * perMetre[k]));
      }
      points_.push_back(point);
    }
  }

  void packMaterials() {
    auto& list = packed_.materials;
    std::int32_t last = 0;
    for (std::size_t i = 0; i < elements_.size(); ++i) {
      // In the order of the file, unless elements are left out.
      const std::int32_t material = mesh_->materials[packed_.numLost == 0 ? i : elements_[i]];
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
    ids.reserve(elements_.size() * 2);
    materials.reserve(elements_.size());
    std::int64_t lastId = 0;
    std::size_t place = 0;
    std::int64_t lastPlace = 0;
    for (std::size_t i = 0; i < elements_.size(); ++i) {
      const std::uint32_t e = elements_[i];
      const std::uint32_t later = elements_[std::min(i + ahead, elements_.size() - 1)];
      fetch(mesh_->elementIds[later]);
      fetch(mesh_->materials[later]);
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
      packed_.materialAreas[place] += areaOf(corners_[i]);
    }
    packed_.area = std::accumulate(packed_.materialAreas.begin(), packed_.materialAreas.end(), 0.0);
    compress(0);
    compress(1);
  }

  [[nodiscard]] double areaOf(const Corners& corners) const {
    const Point& d = points_[corners[corners[3] == none ? 0 : 3]];
    const auto across = [this, &corners](std::size_t k) {
      return static_cast<double>(points_[corners[2]][k] - points_[corners[0]][k]);
    };
    const auto back = [this, &corners, &d](std::size_t k) {
      return static_cast<double>(d[k] - points_[corners[1]][k]);
    };
    return std::abs(across(0) * back(1) - back(0) * across(1)) / 2 * packed_.step[0] *
           packed_.step[1];
  }

  /// Calls `visit(node, known)` with each node in its order.
  template <class Visit>
  void forEachNode(Visit visit) const {
    std::uint32_t next = 0;
    for (const Corners& corners : corners_) {
      const std::size_t count = cornerCount(corners);
      for (std::size_t i = 0; i < count; ++i) {
        if (corners[i] == next) {
          visit(next, knownAround(corners, count, i));
          ++next;
        }
      }
    }
    for (; next < points_.size(); ++next) {
      visit(next, Known());
    }
  }

  static Known knownAround(const Corners& corners, std::size_t count, std::size_t node) {
    Known known;
    for (std::size_t step = 1; step < count; ++step) {
      const std::size_t i = node + step < count ? node + step : node + step - count;
      if (corners[i] < corners[node]) {
        known.places[known.count++] = corners[i];
      }
    }
    return known;
  }

  void packNodes() {
    packed_.prediction = bestPrediction();
    for (std::size_t k = 0; k < 3; ++k) {
      packed_.streams[4 + k].reserve(points_.size() * 2);
    }
    forEachNode([this](std::uint32_t node, const Known& known) {
      const auto guess = foretold(packed_.prediction, node, known, points_);
      for (std::size_t k = 0; k < 3; ++k) {
        appendInteger(packed_.streams[4 + k], points_[node][k] - guess[k]);
      }
    });
    std::array<std::future<void>, 3> compressions;
    for (std::size_t k = 0; k < 3; ++k) {
      compressions[k] = std::async(std::launch::async, [this, k] { compress(4 + k); });
    }
    for (auto& compression : compressions) {
      compression.get();
    }
  }

  void packNodeIds() {
    std::vector<std::uint8_t>& ids = packed_.streams[3];
    ids.reserve(sources_.size() * 2);
    std::int64_t lastId = 0;
    for (std::size_t i = 0; i < sources_.size(); ++i) {
      fetch(mesh_->nodeIds[sources_[std::min(i + ahead, sources_.size() - 1)]]);
      const std::int32_t id = mesh_->nodeIds[sources_[i]];
      appendInteger(ids, id - lastId - 1);
      lastId = id;
    }
    compress(3);
  }

  /// The prediction that leaves the least to tell, by a sample of nodes.
  [[nodiscard]] int bestPrediction() const {
    constexpr std::uint32_t sampleSize = 20000;
    const auto stride = static_cast<std::uint32_t>(points_.size() / sampleSize + 1);
    std::array<double, predictions> bits{};
    std::uint32_t wanted = 0;
    forEachNode([&](std::uint32_t node, const Known& known) {
      if (node != wanted) {
        return;
      }
      wanted += stride;
      for (int prediction = 0; prediction < predictions; ++prediction) {
        const auto guess = foretold(prediction, node, known, points_);
        for (std::size_t k = 0; k < 3; ++k) {
          bits[static_cast<std::size_t>(prediction)] +=
              std::log2(1 + std::abs(static_cast<double>(points_[node][k] - guess[k])));
        }
      }
    });
    return static_cast<int>(std::min_element(bits.begin(), bits.end()) - bits.begin());
  }

  const Mesh* mesh_;
  const Kestrix::MeshNodeIndex* index_;
  std::vector<std::uint32_t> elements_;  ///< places in the mesh, in the order of the page
  std::vector<Corners> corners_;         ///< of each of them, as places of packed nodes
  std::vector<std::uint32_t> sources_;   ///< of each packed node its place in the mesh
  std::vector<Point> points_;            ///< of each packed node
  PackedMesh packed_;
};

}  // namespace

PackedMesh packMesh(const Mesh& mesh, const Kestrix::MeshNodeIndex& index) {
  return Packing(mesh, index).run();
}

}  // namespace kcf
