#include "KESTparse/framework/Rules.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
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
    // Who is told of each item once reads the first of its equals beside it.
    const std::size_t lastPartner = GlobalValues::instance().explainsMessages ? begin + 1 : end;
    for (std::size_t i = begin; i < lastPartner; ++i) {
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

void checkIndexedList(InputBlock& block, const Subject& values, const Subject& indices,
                      std::size_t numValues, std::size_t numIndices,
                      const IndexedListTexts& texts) {
  if (numValues == numIndices) {
    return;
  }
  if (numIndices == 0) {
    report(Severity::error, block, {indices, values},
           {"index-missing", "'{1}' is given without the material indices of its values",
            "list in '{2}' one material index for each value of '{1}'"},
           "{}", texts.indexMissing, values.member, indices.member);
  } else if (numValues == 0) {
    report(
        Severity::error, block, {values, indices},
        {"values-missing", "'{2}' lists material indices, but '{1}' with their values is missing",
         "list in '{1}' one value for each material index of '{2}'"},
        "{}", texts.valuesMissing, values.member, indices.member);
  } else {
    report(Severity::error, block, {values, indices},
           {"index-count",
            "the lists '{1}' and '{2}' differ in length: values {3}, material indices {4}",
            "give as many values in '{1}' as material indices in '{2}'"},
           "{}", texts.lengthsDiffer, values.member, indices.member, numValues, numIndices);
  }
}

void reportUnknownSide(InputBlock& innerBoundary, const Subject& side, const std::string& name,
                       const std::string& nearest,
                       const RuleWords<std::string, std::string>& rule) {
  report(
      Severity::error, innerBoundary, {side}, rule,
      "Inner Boundary string_name '{}' not found in STRINGDEF block. Make sure the Inner Boundary string_name has the same name as a defined unique string in the STRINGDEF block.",
      name, nearest);
}

bool checkRestartFile(InputBlock& block, std::initializer_list<Subject> fileAndDemand,
                      const std::string& file, const RestartFileWords& words) {
  const bool asksForFile = !words.unsetFile.empty();
  if (asksForFile && (file == words.unsetFile || (file.empty() && words.emptyIsUnset))) {
    report(
        Severity::error, block, fileAndDemand,
        {"no-restart-file", "to continue a simulation, the file that it stored is needed",
         "name the restart file of that simulation in 'file'"},
        "No restart file was specified. To 'continue' a simulation a restart file must be given!");
    return false;
  }
  const std::string path = resolvePath(file);
  if (canOpen(path)) {
    return true;
  }
  report(Severity::error, block, fileAndDemand,
         {"missing-file", "the restart file '{2}' does not exist or cannot be opened",
          "name in 'file' the restart file that an earlier simulation wrote, with its folder"},
         "Restart file '{}' does not exist. Please give a valid file name for the restart file.{}",
         words.showsNameAsGiven ? file : path,
         words.tellsNote ? " Note: Relative path can be inserted manually, e.g. "
                           "../gridFolder/grid.2dm (not over the 'load file' botton)."
                         : "",
         file);
  return false;
}

void checkRestartTime(InputBlock& block, const Subject& file, const Subject& time,
                      const std::string& path, double& restartTime) {
  if (restartTime < 0) {
    const std::vector<double> times = h5io::getSolutionTimes(path);
    if (!times.empty()) {
      restartTime = times.back();
    }
  }
  constexpr double tolerance = 0.001;
  const std::vector<double> times = h5io::getSolutionTimes(path);
  std::string validTimes;
  double nearest = 0;
  double leastDistance = std::numeric_limits<double>::infinity();
  for (const double stored : times) {
    const double distance = std::abs(stored - restartTime);
    if (distance < tolerance) {
      return;
    }
    if (distance < leastDistance) {
      leastDistance = distance;
      nearest = stored;
    }
    validTimes += doubleToFixed(stored) + " ";
  }
  const std::string text = fmt::format(
      "Restart solution time '{}' does not exist within the file. Please choose a valid restart solution time. Valid times are:<br>{}",
      doubleToString(restartTime), validTimes);
  if (times.empty()) {
    report(Severity::error, block, {file},
           {"no-solution", "no solution is stored in the restart file '{1}'",
            "name in 'file' the results of a simulation that stored a solution"},
           "{}", text, path);
  } else {
    report(Severity::error, block, {time},
           {"unknown-restart-time", "no solution at {1} s is stored in the restart file '{2}'",
            "choose one of the stored times, which go from {3} s to {4} s: nearest is '{5} = {6}'"},
           "{}", text, restartTime, path, times.front(), times.back(), time.member, nearest);
  }
}

}  // namespace KESTparse
