#include "KESTparse/document/CheckedMesh.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <set>
#include <string>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/document/Codes.h"

namespace KESTparse {
namespace {

using Kestrix::Mesh;
using Kestrix::MeshNodeIndex;

/// A node as a point of the plane.
using Point = std::array<double, 3>;

/// What stands behind a card, in words.
std::string_view contentOf(std::string_view card) {
  if (card == "ND") {
    return "a node (ND) has its number, x, y and its elevation";
  }
  if (card == "E3T") {
    return "a triangle (E3T) has its number, three nodes and its material";
  }
  if (card == "E4Q") {
    return "a quadrangle (E4Q) has its number, four nodes and its material";
  }
  if (card == "NS") {
    return "a node string (NS) has its nodes, the last one negative, and its name";
  }
  return "an element has its number, its nodes and its material";
}

class MeshCheck {
 public:
  MeshCheck(std::string_view text, const Mesh& mesh, FaultList faults)
      : text_(text),
        mesh_(mesh),
        nodes_(mesh_.nodeIds),
        isUsed_(mesh_.nodes.size(), false),
        faults_(std::move(faults)) {}

  std::shared_ptr<const CheckedMesh> run() {
    checkLines();
    checkSize();
    checkNumbers();
    // Without any node, that each one is missing says no more.
    if (!mesh_.nodes.empty()) {
      checkElements();
      checkSideNodes();
      checkStrings();
    }
    checkPlaces();
    checkUse();
    return std::make_shared<CheckedMesh>(
        CheckedMesh{faults_.placed(text_), std::move(nodes_), MeshNodeIndex(mesh_.elementIds),
                    rangeOf(mesh_.nodeIds), rangeOf(mesh_.elementIds), materials()});
  }

 private:
  /// The card at the front of a line.
  [[nodiscard]] std::string_view cardAt(std::size_t place) const {
    return wordAt(text_, place, 0).in(text_);
  }

  void checkLines() {
    for (const Kestrix::MeshFault& fault : mesh_.faults) {
      if (!faults_.wants(code::unreadableMeshLine)) {
        continue;
      }
      const std::string_view card = cardAt(fault.place);
      const Span line = lineAt(text_, fault.place);
      Span at = wordAt(text_, fault.place, 0);
      std::string message = fmt::format("the line '{}' ends too early", card);
      for (std::size_t i = 1;; ++i) {
        const Span word = wordAt(text_, fault.place, i);
        if (word == line) {
          break;
        }
        if (!isNumber(word.in(text_), card != "ND" || i == 1)) {
          at = word;
          message =
              fmt::format("'{}' in the line '{}' is no number{}", word.in(text_), card,
                          card == "ND" && i > 1 ? "" : " of a node, an element or a material");
          break;
        }
      }
      faults_.add({code::unreadableMeshLine, at, std::move(message),
                   fmt::format("correct the line: {}", contentOf(card))});
    }
  }

  static bool isNumber(std::string_view word, bool isWhole) {
    return isWhole ? integerSyntaxFault(word).empty() && extractInt(word).ok
                   : realSyntaxFault(word).empty() && extractDouble(word).ok;
  }

  void checkSize() {
    const bool hasNodes = !mesh_.nodes.empty();
    if ((hasNodes && !mesh_.corners.empty()) || !faults_.wants(code::emptyMesh)) {
      return;
    }
    faults_.add({code::emptyMesh,
                 {0, 0},
                 hasNodes                ? "the mesh has no elements"
                 : mesh_.corners.empty() ? "the mesh is empty: it has neither nodes nor elements"
                                         : "the mesh has no nodes",
                 "write its nodes as lines 'ND' and its elements as lines 'E3T' or 'E4Q', or name "
                 "another file"});
  }

  void checkNumbers() {
    for (std::uint32_t i = 0; i < mesh_.nodeIds.size(); ++i) {
      const std::uint32_t first = nodes_.find(mesh_.nodeIds[i]);
      if (first != i) {
        isUsed_[i] = true;
        if (faults_.wants(code::secondNode)) {
          faults_.add({code::secondNode,
                       nodeAt(i),
                       fmt::format("the node {} is there twice", mesh_.nodeIds[i]),
                       "give each node a number of its own",
                       {{nodeAt(first), "the first is here"}}});
        }
      }
    }
  }

  void checkElements() {
    // The nodes of several elements are fetched before they are needed: in a mesh whose numbers
    // follow no order each of them lies somewhere else.
    constexpr std::size_t atOnce = 64;
    std::array<std::array<std::uint32_t, 4>, atOnce> places{};
    for (std::size_t begin = 0; begin < mesh_.corners.size(); begin += atOnce) {
      const std::size_t end = std::min(begin + atOnce, mesh_.corners.size());
      for (std::size_t i = begin; i < end; ++i) {
        findCorners(i, places[i - begin]);
      }
      for (std::size_t i = begin; i < end; ++i) {
        checkElement(i, places[i - begin]);
      }
    }
    tellTurned();
  }

  static std::size_t cornerCount(const std::array<std::int32_t, 4>& corners) {
    return corners[3] == Mesh::noCorner ? 3 : 4;
  }

  void findCorners(std::size_t element, std::array<std::uint32_t, 4>& places) const {
    const std::array<std::int32_t, 4>& corners = mesh_.corners[element];
    for (std::size_t k = 0; k < cornerCount(corners); ++k) {
      places[k] = nodes_.find(corners[k]);
      if (places[k] != MeshNodeIndex::none) {
        __builtin_prefetch(&mesh_.nodes[places[k]]);
      }
    }
  }

  void checkElement(std::size_t element, const std::array<std::uint32_t, 4>& places) {
    const std::array<std::int32_t, 4>& corners = mesh_.corners[element];
    const std::size_t count = cornerCount(corners);
    bool isWhole = true;
    for (std::size_t k = 0; k < count; ++k) {
      if (places[k] == MeshNodeIndex::none) {
        isWhole = false;
        tellUnknown(element, k);
      } else {
        isUsed_[places[k]] = true;
      }
    }
    if (isWhole) {
      checkShape(element, corners, places, count);
    }
  }

  void tellUnknown(std::size_t element, std::size_t corner) {
    if (faults_.wants(code::unknownNode)) {
      const std::int32_t id = mesh_.corners[element][corner];
      addUnknown(cornerAt(element, corner),
                 fmt::format("the element {}", mesh_.elementIds[element]), id);
    }
  }

  void addUnknown(Span at, const std::string& who, std::int32_t id) {
    faults_.add({code::unknownNode, at,
                 fmt::format("{} names the node {}, which the mesh does not have", who, id),
                 fmt::format("name a node of the mesh, or add the node {}", id)});
  }

  void checkShape(std::size_t element, const std::array<std::int32_t, 4>& corners,
                  const std::array<std::uint32_t, 4>& places, std::size_t count) {
    const bool isTriangle = count == 3;
    const std::int32_t a = corners[0];
    const std::int32_t b = corners[1];
    const std::int32_t c = corners[2];
    const std::int32_t d = isTriangle ? a : corners[3];
    if (a == b || b == c || a == c || (!isTriangle && (d == a || d == b || d == c))) {
      tellRepeated(element, count);
      return;
    }
    const Point& p = mesh_.nodes[places[0]];
    const Point& q = mesh_.nodes[places[1]];
    const Point& r = mesh_.nodes[places[2]];
    const Point& s = mesh_.nodes[places[isTriangle ? 2 : 3]];
    // Twice the area, from the diagonals.
    const double x1 = r[0] - p[0];
    const double y1 = r[1] - p[1];
    const double x2 = (isTriangle ? r[0] : s[0]) - q[0];
    const double y2 = (isTriangle ? r[1] : s[1]) - q[1];
    const double area = x1 * y2 - y1 * x2;
    constexpr double flat = 1e-9;
    if (!(std::abs(area) > flat * (x1 * x1 + y1 * y1 + x2 * x2 + y2 * y2))) {
      if (faults_.wants(code::flatElement)) {
        faults_.add({code::flatElement, elementAt(element),
                     fmt::format("the element {} has no area", mesh_.elementIds[element]),
                     "move its nodes apart, or remove it"});
      }
      return;
    }
    Sense& sense = area > 0 ? counterClockwise_ : clockwise_;
    constexpr std::size_t most = 32;
    if (sense.first.size() < most) {
      sense.first.push_back(element);
    }
    ++sense.count;
  }

  void tellRepeated(std::size_t element, std::size_t count) {
    if (!faults_.wants(code::repeatedNode)) {
      return;
    }
    const std::array<std::int32_t, 4>& corners = mesh_.corners[element];
    for (std::size_t k = 1; k < count; ++k) {
      if (std::find(corners.begin(), corners.begin() + static_cast<std::ptrdiff_t>(k),
                    corners[k]) != corners.begin() + static_cast<std::ptrdiff_t>(k)) {
        faults_.add({code::repeatedNode, cornerAt(element, k),
                     fmt::format("the element {} names the node {} twice",
                                 mesh_.elementIds[element], corners[k]),
                     "name each of its corners once"});
        return;
      }
    }
  }

  /// Most elements of a mesh have its sense.
  void tellTurned() {
    const bool isUsual = counterClockwise_.count >= clockwise_.count;
    const Sense& turned = isUsual ? clockwise_ : counterClockwise_;
    for (std::size_t i = 0; i < turned.count; ++i) {
      if (!faults_.wants(code::turnedElement) || i >= turned.first.size()) {
        continue;
      }
      const std::size_t element = turned.first[i];
      faults_.add(
          {code::turnedElement, elementAt(element),
           fmt::format("the corners of the element {} are named {}, those of the others {}",
                       mesh_.elementIds[element], isUsual ? "clockwise" : "counter-clockwise",
                       isUsual ? "counter-clockwise" : "clockwise"),
           "name its corners in the opposite order"});
    }
  }

  void checkSideNodes() {
    for (const Kestrix::MeshSideNode& side : mesh_.sideNodes) {
      const std::uint32_t place = nodes_.find(side.nodeId);
      if (place != MeshNodeIndex::none) {
        isUsed_[place] = true;
      } else if (faults_.wants(code::unknownNode)) {
        addUnknown(numberAt(mesh_.elementPlaces[side.element], side.nodeId, 2),
                   fmt::format("the element {}", mesh_.elementIds[side.element]), side.nodeId);
      }
    }
  }

  void checkStrings() {
    for (const Kestrix::MeshString& string : mesh_.strings) {
      for (const std::int32_t id : string.nodeIds) {
        if (nodes_.find(id) == MeshNodeIndex::none && faults_.wants(code::unknownNode)) {
          addUnknown(numberAt(string.place, id, 1),
                     string.name.empty() ? std::string("a node string")
                                         : fmt::format("the node string '{}'", string.name),
                     id);
        }
      }
    }
  }

  /// Finds nodes at one place. A table of bits tells most nodes that they are alone.
  void checkPlaces() {
    const std::size_t count = mesh_.nodes.size();
    if (count < 2) {
      return;
    }
    constexpr std::size_t bitsForEach = 8;
    constexpr std::size_t bitsOfWord = 64;
    const std::size_t size = std::bit_ceil(std::max<std::size_t>(count * bitsForEach, bitsOfWord));
    std::vector<std::uint64_t> taken(size / bitsOfWord);
    std::vector<std::uint64_t> again(size / bitsOfWord);
    bool isAnyAgain = false;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t place = hashOf(mesh_.nodes[i]) & (size - 1);
      const std::uint64_t bit = std::uint64_t{1} << (place % bitsOfWord);
      if ((taken[place / bitsOfWord] & bit) != 0) {
        again[place / bitsOfWord] |= bit;
        isAnyAgain = true;
      }
      taken[place / bitsOfWord] |= bit;
    }
    std::vector<std::pair<std::size_t, std::uint32_t>> candidates;  // with their hashes
    for (std::uint32_t i = 0; isAnyAgain && i < count; ++i) {
      const std::size_t hash = hashOf(mesh_.nodes[i]);
      const std::size_t place = hash & (size - 1);
      if ((again[place / bitsOfWord] >> (place % bitsOfWord) & 1U) != 0) {
        candidates.emplace_back(hash, i);
      }
    }
    std::sort(candidates.begin(), candidates.end());
    std::vector<std::pair<std::uint32_t, std::uint32_t>> shared;  // the later node and the first
    for (auto begin = candidates.begin(), next = begin; next != candidates.end(); ++next) {
      begin = begin->first == next->first ? begin : next;
      const auto first = std::find_if(begin, next, [this, &next](const auto& other) {
        return mesh_.nodes[other.second][0] == mesh_.nodes[next->second][0] &&
               mesh_.nodes[other.second][1] == mesh_.nodes[next->second][1];
      });
      if (first != next) {
        shared.emplace_back(next->second, first->second);
      }
    }
    std::sort(shared.begin(), shared.end());
    for (const auto& [later, first] : shared) {
      tellSharedPlace(first, later);
    }
  }

  void tellSharedPlace(std::uint32_t first, std::uint32_t second) {
    // A number that is there twice was told.
    if (mesh_.nodeIds[first] != mesh_.nodeIds[second] && faults_.wants(code::sharedPlace)) {
      faults_.add({code::sharedPlace,
                   nodeAt(second),
                   fmt::format("the nodes {} and {} lie at one place", mesh_.nodeIds[first],
                               mesh_.nodeIds[second]),
                   "let the elements around them share one of the two, or move them apart",
                   {{nodeAt(first), fmt::format("the node {} is here", mesh_.nodeIds[first])}}});
    }
  }

  static std::size_t hashOf(const Point& point) {
    // Adding zero makes the two zeros one.
    const auto x = std::bit_cast<std::uint64_t>(point[0] + 0.0);
    const auto y = std::bit_cast<std::uint64_t>(point[1] + 0.0);
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
    constexpr int shift = 29;
    const std::uint64_t mixed = (x * factor + std::rotl(y, shift)) * factor;
    return static_cast<std::size_t>(mixed ^ (mixed >> (shift + 3)));
  }

  void checkUse() {
    if (mesh_.corners.empty()) {
      return;
    }
    for (std::size_t i = 0; i < isUsed_.size(); ++i) {
      if (!isUsed_[i] && faults_.wants(code::idleNode)) {
        faults_.add({code::idleNode, nodeAt(i),
                     fmt::format("the node {} belongs to no element", mesh_.nodeIds[i]),
                     "remove it, or add the element that it is a corner of"});
      }
    }
  }

  /// The number of a node.
  [[nodiscard]] Span nodeAt(std::size_t node) const {
    return wordAt(text_, mesh_.nodePlaces[node], 1);
  }

  /// The number of an element.
  [[nodiscard]] Span elementAt(std::size_t element) const {
    return wordAt(text_, mesh_.elementPlaces[element], 1);
  }

  [[nodiscard]] Span cornerAt(std::size_t element, std::size_t corner) const {
    const std::string_view card = cardAt(mesh_.elementPlaces[element]);
    const bool hasSides = card != "E3T" && card != "E4Q";
    return wordAt(text_, mesh_.elementPlaces[element], 2 + corner * (hasSides ? 2 : 1));
  }

  /// The number `id`, or its opposite, in a line from a word on; the first word if it is not there.
  [[nodiscard]] Span numberAt(std::size_t place, std::int32_t id, std::size_t first) const {
    const Span line = lineAt(text_, place);
    for (std::size_t i = first;; ++i) {
      const Span word = wordAt(text_, place, i);
      if (word == line) {
        return wordAt(text_, place, 0);
      }
      if (std::abs(std::int64_t{stringToInt(word.in(text_))}) == std::abs(std::int64_t{id})) {
        return word;
      }
    }
  }

  static std::pair<std::int32_t, std::int32_t> rangeOf(const std::vector<std::int32_t>& ids) {
    if (ids.empty()) {
      return {};
    }
    const auto [lowest, highest] = std::minmax_element(ids.begin(), ids.end());
    return {*lowest, *highest};
  }

  [[nodiscard]] std::vector<std::int32_t> materials() const {
    constexpr std::int32_t usual = 4096;
    std::vector<char> isKnown(usual, 0);
    std::set<std::int32_t> found;
    for (const std::int32_t material : mesh_.materials) {
      if (material < 0 || material >= usual) {
        found.insert(material);
      } else if (isKnown[static_cast<std::size_t>(material)] == 0) {
        isKnown[static_cast<std::size_t>(material)] = 1;
        found.insert(material);
      }
    }
    return {found.begin(), found.end()};
  }

  struct Sense {
    std::vector<std::size_t> first;
    std::size_t count = 0;
  };

  std::string_view text_;
  const Mesh& mesh_;
  MeshNodeIndex nodes_;
  std::vector<bool> isUsed_;
  Sense counterClockwise_;
  Sense clockwise_;
  FaultList faults_;
};

}  // namespace

std::shared_ptr<const CheckedMesh> checkMesh(std::string_view text) {
  return checkMesh(text, Kestrix::readMesh(text, true));
}

std::shared_ptr<const CheckedMesh> checkMesh(std::string_view text, const Mesh& mesh) {
  FaultList faults;
  if (!findForeignText(text, faults)) {
    return std::make_shared<CheckedMesh>(
        CheckedMesh{faults.placed(text), MeshNodeIndex({}), MeshNodeIndex({}), {}, {}, {}});
  }
  return MeshCheck(text, mesh, std::move(faults)).run();
}

}  // namespace KESTparse
