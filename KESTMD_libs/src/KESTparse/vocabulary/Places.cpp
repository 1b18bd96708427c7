#include "KESTparse/vocabulary/Places.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/Suggestion.h"
#include "KESTparse/framework/InputBlock.h"

namespace KESTparse {
namespace {

void collect(const InputBlock& block, const std::string& path, std::vector<Place>& places) {
  places.push_back({&block, path});
  for (const InputBlock& child : block.logicalBlocks()) {
    collect(child, pathOf(path, child), places);
  }
}

/// `path` in upper case, without slashes at its ends.
std::string comparable(const std::string& path) {
  std::string joined;
  for (const std::string& name : split("/", path)) {
    joined += (joined.empty() ? "" : "/") + toUpper(name);
  }
  return joined;
}

/// The last `count` names of `path`.
std::string_view lastNames(std::string_view path, std::size_t count) {
  std::size_t begin = path.size();
  while (count > 0 && begin != std::string_view::npos && begin > 0) {
    begin = path.rfind('/', begin - 1);
    --count;
  }
  return begin == std::string_view::npos ? path : path.substr(std::min(begin + 1, path.size()));
}

}  // namespace

std::string pathOf(const std::string& parent, const InputBlock& child) {
  return (parent == "/" ? "" : parent) + "/" + std::string(child.getName());
}

std::vector<Place> placesOf(const InputBlock& root) {
  std::vector<Place> places;
  collect(root, "/", places);
  return places;
}

Place findPlace(const InputBlock& root, const std::string& path) {
  if (path.empty()) {
    return {nullptr, path};
  }
  Place place{&root, "/"};
  for (const std::string& name : split("/", path)) {
    const int position = place.block->getLogicalBlockPosition(name);
    if (position < 0) {
      return {nullptr, path};
    }
    place.block = &place.block->getLogicalBlock(static_cast<std::size_t>(position));
    place.path = pathOf(place.path, *place.block);
  }
  return place;
}

std::vector<Place> findPlaces(const InputBlock& root, const std::string& path) {
  const Place exact = findPlace(root, path);
  if (exact.block != nullptr) {
    return {exact};
  }
  std::string end;
  for (const std::string& name : split("/", path)) {
    end += "/" + name;
  }
  std::vector<Place> found;
  for (Place& place : placesOf(root)) {
    if (!end.empty() && !path.starts_with('/') && place.path.ends_with(end)) {
      found.push_back(std::move(place));
    }
  }
  return found;
}

std::string occurrence(const InputBlock& block) {
  if (block.isRepeatable()) {
    return block.isMandatory() ? "once or more" : "any number of times";
  }
  return block.isMandatory() ? "exactly once" : "at most once";
}

std::vector<std::string> nearestPaths(const InputBlock& root, const std::string& path) {
  const std::string wanted = comparable(path);
  const auto count = static_cast<std::size_t>(std::count(wanted.begin(), wanted.end(), '/')) + 1;
  std::vector<std::pair<std::size_t, std::string>> ranked;
  for (const Place& place : placesOf(root)) {
    const std::string known = comparable(place.path);
    ranked.emplace_back(
        std::min(editDistance(wanted, known), editDistance(wanted, lastNames(known, count))),
        place.path);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  constexpr std::size_t numHints = 3;
  std::vector<std::string> nearest;
  for (std::size_t i = 0; i < std::min(numHints, ranked.size()); ++i) {
    nearest.push_back(std::move(ranked[i].second));
  }
  return nearest;
}

}  // namespace KESTparse
