#include "diff/Comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>
#include <system_error>
#include <utility>

#include "JsonEmission.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "NamedFiles.h"

namespace kcf {
namespace {

namespace fs = std::filesystem;
using KESTparse::ActiveValues;
using KESTparse::InputBlock;
using KESTparse::InputTag;
using nlohmann::json;

enum class Contents { same, different, unknown };

Contents compareContents(const fs::path& one, const fs::path& other) {
  std::error_code fault;
  if (fs::equivalent(one, other, fault) && !fault) {
    return Contents::same;
  }
  if (!fs::is_regular_file(one, fault) || !fs::is_regular_file(other, fault)) {
    return Contents::unknown;
  }
  std::ifstream a(one, std::ios::binary);
  std::ifstream b(other, std::ios::binary);
  if (!a || !b) {
    return Contents::unknown;
  }
  if (fs::file_size(one, fault) != fs::file_size(other, fault)) {
    return Contents::different;
  }
  constexpr std::size_t pieceSize = 1 << 16;
  std::vector<char> pieceOfA(pieceSize);
  std::vector<char> pieceOfB(pieceSize);
  while (a && b) {
    a.read(pieceOfA.data(), pieceSize);
    b.read(pieceOfB.data(), pieceSize);
    if (a.gcount() != b.gcount() ||
        !std::equal(pieceOfA.begin(), pieceOfA.begin() + a.gcount(), pieceOfB.begin())) {
      return Contents::different;
    }
  }
  return a.bad() || b.bad() ? Contents::unknown : Contents::same;
}

/// The two files, and how to look into them. Numbers of the process belong to their file.
class Side {
 public:
  explicit Side(const ComparedFile& file) : file_(&file) {}

  [[nodiscard]] json valueOf(const InputTag& tag) const {
    const ActiveValues active(file_->document->values());
    json value;
    callbacks_.tag(tag, {}, &value);
    return value;
  }
  [[nodiscard]] std::string contentOf(const InputBlock& block) const {
    const ActiveValues active(file_->document->values());
    json content;
    std::vector<std::string> path;
    KESTparse::walkTree(block, path, content, callbacks_);
    return content.dump();
  }
  [[nodiscard]] ComparedValue shown(const InputTag& tag, const json& value) const {
    return {fmt::format("{}", fmt::join(KESTparse::split(" \t\n", tag.getRawValue()), " ")),
            value.dump(), !isGiven(tag)};
  }
  [[nodiscard]] bool isGiven(const InputTag& tag) const {
    return file_->document->nodeOf(tag) != KESTparse::noNode;
  }
  [[nodiscard]] fs::path fileOf(const InputTag& tag) const {
    return fs::path(file_->directory) / tag.getRawValue();
  }

 private:
  const ComparedFile* file_;
  KESTparse::TreeCallbacks callbacks_ = KESTparse::jsonCallbacks();
};

using Blocks = std::vector<const InputBlock*>;
using Tags = std::vector<const InputTag*>;

std::string_view identityOf(const InputBlock& block) {
  for (const std::string_view name : block.getIdentifyingTags()) {
    if (block.hasTag(name)) {
      return block.getTag(name, 0).getRawText();
    }
  }
  return {};
}

/// Blocks of one name that are the same on both sides, by their places; a missing one is null.
struct Pairing {
  struct Pair {
    const InputBlock* before = nullptr;
    const InputBlock* after = nullptr;
    std::size_t number = 0;  // on the side that has it, from 1; 0 where none is needed
  };
  std::vector<Pair> pairs;  // those that are new last
  bool isReordered = false;
};

class Comparison {
 public:
  Comparison(const ComparedFile& before, const ComparedFile& after)
      : before_(before), after_(after) {}

  void compare(const InputBlock& before, const InputBlock& after, const std::string& path) {
    const InputBlock& master = *before.getLogicalMaster();
    std::vector<std::pair<Tags, Tags>> tags(master.getLogicalNumTags());
    for (std::size_t i = 0; i < before.getNumTags(); ++i) {
      tags[before.getTag(i).getPosition()].first.push_back(&before.getTag(i));
    }
    for (std::size_t i = 0; i < after.getNumTags(); ++i) {
      tags[after.getTag(i).getPosition()].second.push_back(&after.getTag(i));
    }
    for (const auto& [old, fresh] : tags) {
      compareTags(old, fresh, path);
    }
    std::vector<std::pair<Blocks, Blocks>> blocks(master.getLogicalNumBlocks());
    const auto placeOf = [&master](const InputBlock& block) {
      return static_cast<std::size_t>(master.getLogicalBlockPosition(block.getName()));
    };
    for (std::size_t i = 0; i < before.getNumBlocks(); ++i) {
      blocks[placeOf(before.getBlock(i))].first.push_back(&before.getBlock(i));
    }
    for (std::size_t i = 0; i < after.getNumBlocks(); ++i) {
      blocks[placeOf(after.getBlock(i))].second.push_back(&after.getBlock(i));
    }
    for (const auto& [old, fresh] : blocks) {
      compareBlocks(old, fresh, path);
    }
  }

  std::vector<Difference> found;

 private:
  using Kind = Difference::Kind;

  static std::string below(const std::string& path, std::string_view name, std::string_view key) {
    return fmt::format("{}{}{}{}{}{}", path, path.empty() ? "" : "/", name, key.empty() ? "" : "[",
                       key, key.empty() ? "" : "]");
  }

  static std::string keyOf(const InputBlock& block, std::size_t number) {
    const std::string_view name = identityOf(block);
    return name.empty() && number > 0 ? std::to_string(number) : std::string(name);
  }

  // Tags.

  /// Compares the instances of one tag.
  void compareTags(const Tags& before, const Tags& after, const std::string& path) {
    if (before.empty() && after.empty()) {
      return;
    }
    // Lists with names belong together by these, all others by their order.
    std::map<std::string, std::size_t> places;
    std::vector<std::pair<const InputTag*, const InputTag*>> pairs;
    std::vector<std::string> keys;
    const auto add = [&](const InputTag& tag, const Side& side, std::size_t number, bool isNew) {
      const json value = side.valueOf(tag);
      std::string key = value.is_object() ? value.value("tag", "") : std::to_string(number);
      const auto [place, isFirst] = places.try_emplace(key, pairs.size());
      if (isFirst) {
        pairs.emplace_back(nullptr, nullptr);
        keys.push_back(value.is_object() || before.size() > 1 || after.size() > 1 ? key : "");
      }
      (isNew ? pairs[place->second].second : pairs[place->second].first) = &tag;
    };
    for (std::size_t i = 0; i < before.size(); ++i) {
      add(*before[i], before_, i + 1, false);
    }
    for (std::size_t i = 0; i < after.size(); ++i) {
      add(*after[i], after_, i + 1, true);
    }
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      compareTag(pairs[i].first, pairs[i].second, path, keys[i]);
    }
  }

  /// Compares two instances, one of which may be null.
  void compareTag(const InputTag* before, const InputTag* after, const std::string& path,
                  const std::string& key) {
    const InputTag& any = before == nullptr ? *after : *before;
    const json old = before == nullptr ? json() : before_.valueOf(*before);
    const json fresh = after == nullptr ? json() : after_.valueOf(*after);
    const bool isFile = namesFile(any);
    Contents contents = Contents::unknown;
    if (isFile && before != nullptr && after != nullptr) {
      contents = compareContents(before_.fileOf(*before), after_.fileOf(*after));
    }
    if (contents == Contents::same || (old == fresh && contents != Contents::different)) {
      return;
    }
    Difference difference;
    difference.path = below(path, any.getName(), key);
    difference.kind = before == nullptr  ? Kind::added
                      : after == nullptr ? Kind::removed
                                         : Kind::changed;
    difference.unit = any.getUnit();
    difference.isFile = isFile;
    difference.isContents = contents == Contents::different;
    if (before != nullptr) {
      difference.before = before_.shown(*before, old);
    }
    if (after != nullptr) {
      difference.after = after_.shown(*after, fresh);
    }
    if (old.is_array() && fresh.is_array() && old.size() == fresh.size()) {
      const auto place = std::mismatch(old.begin(), old.end(), fresh.begin()).first;
      difference.item = static_cast<std::size_t>(place - old.begin()) + 1;
    }
    found.push_back(std::move(difference));
  }

  // Blocks.

  /// Compares the blocks of one name.
  void compareBlocks(const Blocks& before, const Blocks& after, const std::string& path) {
    const Pairing pairing = pair(before, after);
    for (const auto& [old, fresh, number] : pairing.pairs) {
      const InputBlock& any = old == nullptr ? *fresh : *old;
      const std::string own =
          below(path, any.getName(), keyOf(fresh == nullptr ? *old : *fresh, number));
      if (old != nullptr && fresh != nullptr) {
        compare(*old, *fresh, own);
      } else {
        list(any, own, old == nullptr ? Kind::added : Kind::removed);
      }
    }
    if (pairing.isReordered) {
      found.push_back({.kind = Kind::reordered,
                       .isBlock = true,
                       .path = below(path, before.front()->getName(), "")});
    }
  }

  /// Tells a block that one side has, with all that is given in it.
  void list(const InputBlock& block, const std::string& path, Kind kind) {
    const Side& side = kind == Kind::added ? after_ : before_;
    found.push_back({.kind = kind, .isBlock = true, .path = path});
    for (std::size_t i = 0; i < block.getNumTags(); ++i) {
      const InputTag& tag = block.getTag(i);
      if (side.isGiven(tag)) {
        compareTag(kind == Kind::added ? nullptr : &tag, kind == Kind::added ? &tag : nullptr, path,
                   "");
      }
    }
    std::map<std::string_view, std::size_t> numbers;
    for (std::size_t i = 0; i < block.getNumBlocks(); ++i) {
      const InputBlock& child = block.getBlock(i);
      const std::size_t number = ++numbers[child.getName()];
      const bool isOne = block.getNumBlocksNamed(child.getName()) == 1;
      list(child, below(path, child.getName(), keyOf(child, isOne ? 0 : number)), kind);
    }
  }

  /// Matches blocks by their names; those without one by what they hold, then by their order.
  [[nodiscard]] Pairing pair(const Blocks& before, const Blocks& after) const {
    std::vector<std::size_t> matchOf(before.size(), after.size());
    std::vector<bool> isTaken(after.size(), false);
    const auto match = [&](const auto& oldKeys, const auto& freshKeys) {
      std::map<std::string, std::deque<std::size_t>> free;
      for (std::size_t i = 0; i < after.size(); ++i) {
        if (!isTaken[i] && !freshKeys[i].empty()) {
          free[freshKeys[i]].push_back(i);
        }
      }
      for (std::size_t i = 0; i < before.size(); ++i) {
        const auto known = free.find(oldKeys[i]);
        if (matchOf[i] == after.size() && known != free.end() && !known->second.empty()) {
          matchOf[i] = known->second.front();
          isTaken[matchOf[i]] = true;
          known->second.pop_front();
        }
      }
    };
    const auto keysOf = [](const Blocks& blocks, const auto& keyOfBlock) {
      std::vector<std::string> keys;
      for (const InputBlock* const block : blocks) {
        keys.push_back(keyOfBlock(*block));
      }
      return keys;
    };
    const auto name = [](const InputBlock& block) { return std::string(identityOf(block)); };
    match(keysOf(before, name), keysOf(after, name));
    const auto content = [](const Side& side) {
      return [&side](const InputBlock& block) {
        return identityOf(block).empty() ? side.contentOf(block) : std::string();
      };
    };
    const auto place = [](const InputBlock& block) {
      return std::string(identityOf(block).empty() ? "nameless" : "");
    };
    if (before.size() > 1 || after.size() > 1) {
      match(keysOf(before, content(before_)), keysOf(after, content(after_)));
    }
    match(keysOf(before, place), keysOf(after, place));
    return pairingOf(before, after, matchOf, isTaken);
  }

  static Pairing pairingOf(const Blocks& before, const Blocks& after,
                           const std::vector<std::size_t>& matchOf,
                           const std::vector<bool>& isTaken) {
    Pairing pairing;
    const bool needsNumbers = before.size() > 1 || after.size() > 1;
    std::size_t last = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
      const bool isMatched = matchOf[i] < after.size();
      const std::size_t number = (isMatched ? matchOf[i] : i) + 1;
      pairing.pairs.push_back(
          {before[i], isMatched ? after[matchOf[i]] : nullptr, needsNumbers ? number : 0});
      // Blocks with names may stand in any order.
      if (isMatched && identityOf(*before[i]).empty()) {
        pairing.isReordered = pairing.isReordered || number < last;
        last = number;
      }
    }
    for (std::size_t i = 0; i < after.size(); ++i) {
      if (!isTaken[i]) {
        pairing.pairs.push_back({nullptr, after[i], needsNumbers ? i + 1 : 0});
      }
    }
    return pairing;
  }

  Side before_;
  Side after_;
};

}  // namespace

std::vector<Difference> differencesOf(const ComparedFile& before, const ComparedFile& after) {
  Comparison comparison(before, after);
  comparison.compare(before.document->root(), after.document->root(), "");
  return std::move(comparison.found);
}

}  // namespace kcf
