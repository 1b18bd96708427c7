#include "KESTparse/framework/Rules.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/InputBlock.h"
#include "h5io/SolutionTimes.h"

namespace KESTparse {

std::vector<PlacePair> pairsWithSharedKey(const std::vector<std::vector<std::string_view>>& keys,
                                          PairOrder order) {
  struct Place {
    std::size_t hash;
    std::string_view key;
    std::size_t item;
  };
  std::vector<Place> places;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    for (const std::string_view key : keys[i]) {
      places.push_back({std::hash<std::string_view>{}(key), key, i});
    }
  }
  // Any order does that puts equals together: names differ little, their hashes much.
  std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
    return std::tie(a.hash, a.key, a.item) < std::tie(b.hash, b.key, b.item);
  });
  std::vector<PlacePair> pairs;
  for (std::size_t begin = 0, end = 0; begin < places.size(); begin = end) {
    while (end < places.size() && places[end].key == places[begin].key) {
      ++end;
    }
    for (std::size_t i = begin; i < end; ++i) {
      for (std::size_t j = i + 1; j < end; ++j) {
        if (places[i].item == places[j].item) {
          continue;
        }
        pairs.emplace_back(places[i].item, places[j].item);
        if (order == PairOrder::both) {
          pairs.emplace_back(places[j].item, places[i].item);
        }
      }
    }
  }
  std::sort(pairs.begin(), pairs.end());
  pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
  return pairs;
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

void checkIndexedList(InputBlock& block, std::size_t numValues, std::size_t numIndices,
                      const IndexedListTexts& texts) {
  if (numValues == numIndices) {
    return;
  }
  if (numIndices == 0) {
    block.addError(std::string(texts.indexMissing));
  } else if (numValues == 0) {
    block.addError(std::string(texts.valuesMissing));
  } else {
    block.addError(std::string(texts.lengthsDiffer));
  }
}

void reportUnknownSide(InputBlock& innerBoundary, const std::string& name) {
  innerBoundary.addError(fmt::format(
      "Inner Boundary string_name '{}' not found in STRINGDEF block. Make sure the Inner Boundary string_name has the same name as a defined unique string in the STRINGDEF block.",
      name));
}

bool checkRestartFile(InputBlock& block, const std::string& file, const RestartFileWords& words) {
  const bool asksForFile = !words.unsetFile.empty();
  if (asksForFile && (file == words.unsetFile || (file.empty() && words.emptyIsUnset))) {
    block.addError(
        "No restart file was specified. To 'continue' a simulation a restart file must be given!");
    return false;
  }
  const std::string path = resolvePath(file);
  if (canOpen(path)) {
    return true;
  }
  block.addError(fmt::format(
      "Restart file '{}' does not exist. Please give a valid file name for the restart file.{}",
      words.showsNameAsGiven ? file : path,
      words.tellsNote ? " Note: Relative path can be inserted manually, e.g. "
                        "../gridFolder/grid.2dm (not over the 'load file' botton)."
                      : ""));
  return false;
}

void checkRestartTime(InputBlock& block, const std::string& file, double& restartTime) {
  if (restartTime < 0) {
    const std::vector<double> times = h5io::getSolutionTimes(file);
    if (!times.empty()) {
      restartTime = times.back();
    }
  }
  constexpr double tolerance = 0.001;
  const std::vector<double> times = h5io::getSolutionTimes(file);
  std::string validTimes;
  for (const double time : times) {
    if (std::abs(time - restartTime) < tolerance) {
      return;
    }
    validTimes += doubleToFixed(time) + " ";
  }
  block.addError(fmt::format(
      "Restart solution time '{}' does not exist within the file. Please choose a valid restart solution time. Valid times are:<br>{}",
      doubleToString(restartTime), validTimes));
}

}  // namespace KESTparse
