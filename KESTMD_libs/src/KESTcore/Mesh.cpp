#include "KESTcore/Mesh.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <future>
#include <thread>
#include <utility>

#include "KESTcore/LargeLists.h"
#include "KESTparse/base/PlainNumbers.h"

namespace Kestrix {
namespace {

/// The characters between the words of a line; names may stand in quotes.
bool isSeparator(char c) {
  return c == ' ' || c == '\t' || c == '"' || c == '\r';
}

/// Takes a line apart.
class Line {
 public:
  Line(const char* begin, const char* end) : here_(begin), end_(end) {}

  std::string_view word() {
    skip();
    const char* const begin = here_;
    while (here_ != end_ && !isSeparator(*here_)) {
      ++here_;
    }
    return {begin, static_cast<std::size_t>(here_ - begin)};
  }

  /// Reads the next word as a number; false, and nothing is taken, when it is none.
  template <class Number>
  bool number(Number& value) {
    skip();
    const char* const stop = KESTparse::readPlainNumber(here_, end_, value);
    if (stop == nullptr || !isEnd(stop)) {
      return unusualNumber(value);
    }
    here_ = stop;
    return true;
  }

  [[nodiscard]] bool atEnd() {
    skip();
    return here_ == end_;
  }

 private:
  void skip() {
    while (here_ != end_ && isSeparator(*here_)) {
      ++here_;
    }
  }

  [[nodiscard]] bool isEnd(const char* place) const { return place == end_ || isSeparator(*place); }

  template <class Number>
  bool unusualNumber(Number& value) {
    const char* const begin = here_ + (here_ != end_ && *here_ == '+' ? 1 : 0);
    const auto [stop, error] = std::from_chars(begin, end_, value);
    if (error != std::errc{} || !isEnd(stop)) {
      return false;
    }
    here_ = stop;
    return true;
  }

  const char* here_;
  const char* end_;
};

template <class T>
void append(std::vector<T>& list, std::vector<T> tail) {
  if (list.empty()) {
    list = std::move(tail);
  } else {
    list.insert(list.end(), tail.begin(), tail.end());
  }
}

/// Reads a part of a text, which begins and ends between lines, but for the node strings: they run
/// over lines, and are few.
class Reading {
 public:
  Reading(std::string_view text, bool withPlaces) : text_(text), withPlaces_(withPlaces) {}

  void readLines(std::size_t from, std::size_t to) {
    const char* const end = text_.data() + to;
    for (const char* begin = text_.data() + from; begin != end;) {
      const auto* const feed =
          static_cast<const char*>(std::memchr(begin, '\n', static_cast<std::size_t>(end - begin)));
      const char* const stop = feed == nullptr ? end : feed;
      place_ = static_cast<std::size_t>(begin - text_.data());
      length_ = static_cast<std::size_t>(stop - begin);
      if (!readCard(Line(begin, stop))) {
        mesh_.faults.push_back({place_});
      }
      begin = feed == nullptr ? end : feed + 1;
    }
  }

  /// Adds what was read of the next part.
  void join(Reading next) {
    for (MeshSideNode& side : next.mesh_.sideNodes) {
      side.element += static_cast<std::uint32_t>(mesh_.elementIds.size());
    }
    append(mesh_.nodeIds, std::move(next.mesh_.nodeIds));
    append(mesh_.nodes, std::move(next.mesh_.nodes));
    append(mesh_.elementIds, std::move(next.mesh_.elementIds));
    append(mesh_.corners, std::move(next.mesh_.corners));
    append(mesh_.materials, std::move(next.mesh_.materials));
    append(mesh_.sideNodes, std::move(next.mesh_.sideNodes));
    append(mesh_.faults, std::move(next.mesh_.faults));
    append(mesh_.nodePlaces, std::move(next.mesh_.nodePlaces));
    append(mesh_.elementPlaces, std::move(next.mesh_.elementPlaces));
    append(stringLines_, std::move(next.stringLines_));
  }

  /// The mesh, when all parts are joined.
  Mesh finish() {
    for (const std::string_view line : stringLines_) {
      place_ = static_cast<std::size_t>(line.data() - text_.data());
      if (!readString(Line(line.data(), line.data() + line.size()))) {
        mesh_.faults.push_back({place_});
      }
    }
    endString({});
    std::sort(mesh_.faults.begin(), mesh_.faults.end(),
              [](const MeshFault& a, const MeshFault& b) { return a.place < b.place; });
    return std::move(mesh_);
  }

 private:
  /// False for a known card that cannot be read.
  bool readCard(Line line) {
    const std::string_view card = line.word();
    if (card == "ND") {
      return readNode(line);
    }
    if (card == "E4Q") {
      return readElement<4, 1>(line);
    }
    if (card == "E3T") {
      return readElement<3, 1>(line);
    }
    if (card == "NS") {
      stringLines_.push_back(text_.substr(place_, length_));
      return true;
    }
    if (card == "E6T") {
      return readElement<3, 2>(line);
    }
    if (card == "E8Q") {
      return readElement<4, 2>(line);
    }
    if (card == "E9Q") {
      return readElement<4, 2, 1>(line);
    }
    return true;
  }

  bool readNode(Line& line) {
    std::int32_t id = 0;
    std::array<double, 3> node{};
    if (!line.number(id) || !line.number(node[0]) || !line.number(node[1]) ||
        !line.number(node[2]) || !std::isfinite(node[0]) || !std::isfinite(node[1]) ||
        !std::isfinite(node[2])) {
      return false;
    }
    if (mesh_.nodes.empty()) {
      expect(mesh_.nodePlaces, mesh_.nodeIds, mesh_.nodes);
    }
    mesh_.nodeIds.push_back(id);
    mesh_.nodes.push_back(node);
    if (withPlaces_) {
      mesh_.nodePlaces.push_back(place_);
    }
    return true;
  }

  /// An element of `Corners` corners, each followed by the node of a side if `Step` is 2, and
  /// `Inner` nodes within.
  template <int Corners, int Step, int Inner = 0>
  bool readElement(Line& line) {
    std::int32_t id = 0;
    std::int32_t material = 0;
    std::array<std::int32_t, 4> corners{0, 0, 0, Mesh::noCorner};
    const std::size_t sideNodes = mesh_.sideNodes.size();
    if (!line.number(id) || !readNodesOf<Corners, Step, Inner>(line, corners) ||
        !line.number(material)) {
      mesh_.sideNodes.resize(sideNodes);
      return false;
    }
    if (mesh_.corners.empty()) {
      expect(mesh_.elementPlaces, mesh_.elementIds, mesh_.corners, mesh_.materials);
    }
    mesh_.elementIds.push_back(id);
    mesh_.corners.push_back(corners);
    mesh_.materials.push_back(material);
    if (withPlaces_) {
      mesh_.elementPlaces.push_back(place_);
    }
    return true;
  }

  /// Makes room as if all that follows were such lines: room that stays empty costs nothing, and
  /// lists that move as they grow take a third of the time.
  template <class... Lists>
  void expect(std::vector<std::size_t>& places, Lists&... lists) const {
    const std::size_t count = (text_.size() - place_) / (length_ + 1) + 1;
    places.reserve(withPlaces_ ? count : 0);
    (reserveLarge(lists, count), ...);
  }

  template <int Corners, int Step, int Inner>
  bool readNodesOf(Line& line, std::array<std::int32_t, 4>& corners) {
    for (int i = 0; i < Corners * Step + Inner; ++i) {
      std::int32_t node = 0;
      if (!line.number(node)) {
        return false;
      }
      if (i < Corners * Step && i % Step == 0) {
        corners[static_cast<std::size_t>(i / Step)] = node;
      } else {
        mesh_.sideNodes.push_back({static_cast<std::uint32_t>(mesh_.elementIds.size()), node});
      }
    }
    return true;
  }

  bool readString(Line line) {
    line.word();
    std::int32_t id = 0;
    while (line.number(id)) {
      if (id == INT32_MIN) {
        return false;
      }
      stringIds_.push_back(std::abs(id));
      stringPlace_ = place_;
      if (id < 0) {
        endString(lastWord(line));
        return true;
      }
    }
    // A string may end without a negative id where its name tells that it does.
    if (!line.atEnd()) {
      endString(lastWord(line));
    }
    return true;
  }

  static std::string_view lastWord(Line& line) {
    std::string_view last;
    while (!line.atEnd()) {
      last = line.word();
    }
    return last;
  }

  void endString(std::string_view name) {
    if (!stringIds_.empty()) {
      mesh_.strings.push_back({std::string(name), std::exchange(stringIds_, {}), stringPlace_});
    }
  }

  std::string_view text_;
  bool withPlaces_;
  std::size_t place_ = 0;
  std::size_t length_ = 0;  // of the line at hand
  std::vector<std::string_view> stringLines_;
  std::vector<std::int32_t> stringIds_;
  std::size_t stringPlace_ = 0;
  Mesh mesh_;
};

}  // namespace

Mesh readMesh(std::string_view text, bool withPlaces) {
  constexpr std::size_t leastPart = 1 << 20;
  // The system is asked for its processors only where a mesh is large.
  const std::size_t parts = text.size() < 2 * leastPart
                                ? 1
                                : std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1,
                                                          text.size() / leastPart);
  const auto beginOf = [text, parts](std::size_t part) {
    const std::size_t about = text.size() / parts * part;
    const std::size_t feed = part == parts ? std::string_view::npos : text.find('\n', about);
    return part == 0 ? 0 : feed == std::string_view::npos ? text.size() : feed + 1;
  };
  const auto read = [&](std::size_t part) {
    Reading reading(text, withPlaces);
    reading.readLines(beginOf(part), beginOf(part + 1));
    return reading;
  };
  std::vector<std::future<Reading>> others;
  for (std::size_t part = 1; part < parts; ++part) {
    // Where no thread can be had, a part is read when it is asked for.
    others.push_back(std::async(std::launch::async | std::launch::deferred, read, part));
  }
  Reading reading = read(0);
  for (std::future<Reading>& other : others) {
    reading.join(other.get());
  }
  return reading.finish();
}

MeshPosition meshPosition(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const std::size_t feed = before.rfind('\n');
  return {1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')),
          before.size() - (feed == std::string_view::npos ? 0 : feed + 1) + 1};
}

MeshNodeIndex::MeshNodeIndex(std::span<const std::int32_t> ids) {
  if (ids.empty()) {
    return;
  }
  const auto isGap = [](std::int64_t id, std::int64_t next) { return next != id + 1; };
  if (std::adjacent_find(ids.begin(), ids.end(), isGap) == ids.end()) {
    first_ = ids.front();
    count_ = ids.size();
    return;
  }
  const auto [lowest, highest] = std::minmax_element(ids.begin(), ids.end());
  first_ = *lowest;
  const auto range = static_cast<std::size_t>(std::int64_t{*highest} - first_ + 1);
  constexpr std::size_t sparse = 8;
  if (range <= sparse * ids.size()) {
    count_ = range;
    places_.assign(range, none);
    for (std::size_t i = ids.size(); i-- > 0;) {
      places_[static_cast<std::size_t>(ids[i] - first_)] = static_cast<std::uint32_t>(i);
    }
    return;
  }
  sorted_.reserve(ids.size());
  for (std::size_t i = 0; i < ids.size(); ++i) {
    sorted_.emplace_back(ids[i], static_cast<std::uint32_t>(i));
  }
  std::sort(sorted_.begin(), sorted_.end());
}

std::uint32_t MeshNodeIndex::findSorted(std::int32_t id) const {
  const auto it = std::lower_bound(sorted_.begin(), sorted_.end(), std::pair{id, std::uint32_t{0}});
  return it == sorted_.end() || it->first != id ? none : it->second;
}

}  // namespace Kestrix
