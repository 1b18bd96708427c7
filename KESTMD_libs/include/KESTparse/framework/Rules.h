/// \file
/// What the rules of several block classes share.
#pragma once

#include <fmt/core.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/base/Suggestion.h"
#include "KESTparse/framework/Derived.h"
#include "KESTparse/framework/RuleMessage.h"

namespace KESTparse {

/// Two different places in a list.
using PlacePair = std::pair<std::size_t, std::size_t>;

/// Which pairs of equals are told: each once, the earlier place first, or each in both orders.
enum class PairOrder { once, both };

/// The pairs of places whose items share a key, in the order of a walk over all pairs. `keys[i]`
/// holds the keys of item i. The cost grows with the number of keys and of pairs found. Where
/// messages are explained, only the pairs with the first of several equals count: their number
/// would grow with the square.
std::vector<PlacePair> pairsWithSharedKey(const std::vector<std::vector<std::string_view>>& keys,
                                          PairOrder order = PairOrder::once);

/// The pairs of `blocks` that are equal in `name`.
template <class Block>
std::vector<PlacePair> equalPairs(const std::vector<Block*>& blocks, std::string Block::*name,
                                  PairOrder order = PairOrder::once) {
  std::vector<std::vector<std::string_view>> keys;
  keys.reserve(blocks.size());
  for (const Block* block : blocks) {
    keys.push_back({block->*name});
  }
  return pairsWithSharedKey(keys, order);
}

/// The pairs of `blocks` of which one has a name, by either of its two members, of the other.
template <class Block>
std::vector<PlacePair> pairsSharingName(const std::vector<Block*>& blocks,
                                        std::string Block::*name1, std::string Block::*name2) {
  std::vector<std::vector<std::string_view>> keys;
  keys.reserve(blocks.size());
  for (const Block* block : blocks) {
    keys.push_back({block->*name1, block->*name2});
  }
  return pairsWithSharedKey(keys);
}

/// The block of `blocks` called `name`, which `index` finds; null when there is none. Throws a
/// `std::string`, the text `notUnique` with the name in it, when there are several.
template <class Block>
const Block* findUnique(const NameIndex& index, const std::vector<Block*>& blocks,
                        std::string_view name,
                        fmt::format_string<const std::string_view&> notUnique) {
  const NameIndex::Places places = index.find(name, blocks, &Block::name);
  if (places.count > 1) {
    throw fmt::vformat(notUnique, fmt::make_format_args(name));
  }
  return places.count == 0 ? nullptr : blocks[places.first];
}

/// Whether `word` is one of `words`.
bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words);

/// `perhaps` for the names of `items`, which `nameOf` gives; nothing as long as nobody reads helps.
template <class Items, class NameOf = std::identity>
std::string perhaps(std::string_view written, const Items& items, const NameOf& nameOf = {}) {
  GlobalValues& values = GlobalValues::instance();
  if (!values.explainsMessages || values.comparisonsLeft == 0) {
    return {};
  }
  std::vector<std::string_view> known;
  known.reserve(items.size());
  for (const auto& item : items) {
    known.push_back(std::invoke(nameOf, item));
  }
  values.comparisonsLeft -= std::min(known.size(), values.comparisonsLeft);
  return perhaps(written, known);
}

/// What is said of a list of values and the list of indices that belongs to it.
struct IndexedListTexts {
  std::string_view indexMissing;   ///< there are values only
  std::string_view valuesMissing;  ///< there are indices only
  std::string_view lengthsDiffer;  ///< there are not as many of them
};

/// Checks that a list of `numValues` in the tag `values` of `block` comes with as many material
/// indices in the tag `indices`. Both may be left out.
void checkIndexedList(InputBlock& block, const Subject& values, const Subject& indices,
                      std::size_t numValues, std::size_t numIndices, const IndexedListTexts& texts);

/// Reports to an inner boundary that what it names as one of its sides is not there. `rule` speaks
/// of the name and of what `perhaps` made of it.
void reportUnknownSide(InputBlock& innerBoundary, const Subject& side, const std::string& name,
                       const std::string& nearest, const RuleWords<std::string, std::string>& rule);

/// How the check of a restart file differs from block to block.
struct RestartFileWords {
  std::string_view unsetFile = {};  ///< the preset that stands for no file; empty: not asked for
  bool emptyIsUnset = true;         ///< an empty name stands for no file too
  bool showsNameAsGiven = false;    ///< the error shows the name as given and not its path
  bool tellsNote = true;            ///< the error ends in the note on relative paths
};

/// Checks that the restart file of `block` can be opened. Returns whether it can; when it cannot,
/// the block has got its error, about the tag of the file and the one that demands it.
bool checkRestartFile(InputBlock& block, std::initializer_list<Subject> fileAndDemand,
                      const std::string& file, const RestartFileWords& words);

/// Checks that the result file `path`, the tag `file` of `block`, holds the solution at
/// `restartTime` [s], its tag `time`. A negative time takes the last stored one, if there is any.
void checkRestartTime(InputBlock& block, const Subject& file, const Subject& time,
                      const std::string& path, double& restartTime);

}  // namespace KESTparse
