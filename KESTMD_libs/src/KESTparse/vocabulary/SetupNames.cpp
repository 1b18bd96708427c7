#include "KESTparse/vocabulary/SetupNames.h"

#include <algorithm>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"

namespace KESTparse {
namespace {

const InputBlock& masterOf(const InputBlock& block) {
  return block.getLogicalMaster() == nullptr ? block : *block.getLogicalMaster();
}

/// Adds the blocks at `path`, names behind slashes, below `block`.
void collect(const InputBlock& block, std::string_view path,
             std::vector<const InputBlock*>& blocks) {
  if (path.empty()) {
    blocks.push_back(&block);
    return;
  }
  path.remove_prefix(1);
  const std::string_view name = path.substr(0, path.find('/'));
  for (std::size_t i = 0; i < block.getNumBlocks(); ++i) {
    if (block.getBlock(i).getName() == name) {
      collect(block.getBlock(i), path.substr(name.size()), blocks);
    }
  }
}

std::vector<const InputBlock*> blocksAt(const InputBlock& block, std::string_view path) {
  std::vector<const InputBlock*> blocks;
  collect(block, path, blocks);
  return blocks;
}

/// The tag at a path such as "../name" from `block`.
const InputTag* tagAt(const InputBlock& block, std::string_view path) {
  constexpr std::string_view above = "../";
  const InputBlock* at = &block;
  while (at != nullptr && path.starts_with(above)) {
    path.remove_prefix(above.size());
    at = at->getActualParent();
  }
  return at == nullptr ? nullptr : at->findTag(path);
}

std::size_t depthOf(std::string_view path) {
  return static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
}

/// The paths of regions have two names.
std::string_view regionPath(std::string_view path) {
  return path.substr(0, std::min(path.find('/', path.find('/', 1) + 1), path.size()));
}

}  // namespace

const InputTag* KnownNames::find(std::string_view name, bool ignoresCase) const {
  for (const DefinedNames* table : tables) {
    if (const auto it = table->tags.find(name); it != table->tags.end()) {
      return it->second;
    }
  }
  if (ignoresCase) {
    const std::string wanted = toUpper(name);
    for (const DefinedNames* table : tables) {
      for (const auto& [known, tag] : table->tags) {
        if (toUpper(known) == wanted) {
          return tag;
        }
      }
    }
  }
  return nullptr;
}

std::vector<std::string_view> KnownNames::all() const {
  std::vector<std::string_view> names;
  for (const DefinedNames* table : tables) {
    names.insert(names.end(), table->inOrder.begin(), table->inOrder.end());
  }
  return names;
}

const SetupNames::BlockRows& SetupNames::rowsOf(const InputBlock& block) {
  const InputBlock& master = masterOf(block);
  const auto [it, isNew] = rows_.try_emplace(&master);
  BlockRows& rows = it->second;
  if (isNew) {
    for (const InputBlock* at = &master; at->getLogicalParent() != nullptr;
         at = at->getLogicalParent()) {
      rows.path.insert(0, "/" + std::string(at->getName()));
    }
    for (std::size_t i = 0; i < master.getLogicalNumTags(); ++i) {
      const std::string_view name = master.getLogicalTag(i).getName();
      rows.tags.push_back({KESTparse::namingsOf(rows.path, name), definingTag(rows.path, name)});
      rows.hasNamings = rows.hasNamings || !rows.tags.back().namings.empty();
    }
  }
  return rows;
}

const SetupNames::TagRows& SetupNames::rowsOf(const InputTag& tag) {
  return rowsOf(*tag.getActualParent()).tags[tag.getPosition()];
}

bool SetupNames::namesSomething(const InputBlock& block) {
  return rowsOf(block).hasNamings;
}

const SetupNames::Scopes& SetupNames::regionsNamed(std::string_view path, std::string_view name) {
  const auto [it, isNew] = regions_.try_emplace(path);
  if (isNew) {
    for (const InputBlock* const region : blocksAt(*root_, path)) {
      if (const InputTag* const tag = region->findTag("region_name")) {
        it->second[tag->getRawText()].push_back(region);
      }
    }
  }
  return it->second[name];
}

const std::vector<const Naming*>& SetupNames::namingsOf(const InputTag& tag) {
  used_.clear();
  const std::vector<const Naming*>& rows = rowsOf(tag).namings;
  const InputBlock& block = *tag.getActualParent();
  if (rows.empty() || tag.getLogicalMaster()->isSuppressed(block)) {
    return used_;
  }
  for (const Naming* const naming : rows) {
    const InputTag* const type = naming->onlyForType.empty() ? nullptr : block.findTag("type");
    if (naming->onlyForType.empty() ||
        (type != nullptr && type->getRawText() == naming->onlyForType)) {
      used_.push_back(naming);
    }
  }
  return used_;
}

const DefiningTag* SetupNames::definitionsIn(const InputTag& tag) {
  return rowsOf(tag).defining;
}

std::pair<SetupNames::Scopes, std::size_t> SetupNames::scopesOf(const Naming& naming,
                                                                const InputTag& tag,
                                                                const DefiningTag& defined) {
  const InputBlock& block = *tag.getActualParent();
  if (naming.scope == NameScope::shared) {
    const std::string& path = rowsOf(block).path;
    const std::string_view shared = sharedBlock(path, defined);
    const InputBlock* scope = &block;
    for (std::size_t i = depthOf(path); i > depthOf(shared); --i) {
      scope = scope->getActualParent();
    }
    return {{scope}, shared.size()};
  }
  const std::string_view path = regionPath(defined.block);
  const InputTag* const regionTag = tagAt(block, regionTagOf(naming, tag.getName()));
  if (regionTag == nullptr) {
    return {{}, path.size()};
  }
  const bool isInFront = naming.scope == NameScope::inFront;
  const std::string_view value = regionTag->getRawText();
  const std::vector<NameInValue> names =
      namesIn(value, isInFront ? NamePart::region : NamePart::whole);
  return {names.empty() ? Scopes() : regionsNamed(path, names.front().in(value)), path.size()};
}

const DefinedNames* SetupNames::namesWithin(const InputBlock& scope, std::size_t pathLength,
                                            const DefiningTag& defined) {
  const auto [it, isNew] = tables_.try_emplace({&scope, &defined});
  if (isNew) {
    for (const InputBlock* block : blocksAt(scope, defined.block.substr(pathLength))) {
      const InputTag* const tag = block->findTag(defined.tag);
      if (tag == nullptr) {
        continue;
      }
      for (const NameInValue& name : namesIn(tag->getRawText(), defined.part)) {
        if (it->second.tags.emplace(name.in(tag->getRawText()), tag).second) {
          it->second.inOrder.push_back(name.in(tag->getRawText()));
        }
      }
    }
  }
  return &it->second;
}

const KnownNames& SetupNames::namesFor(const Naming& naming, const InputTag& tag) {
  // What stands around the tag decides, so that the tags of a block share what is known.
  std::vector<const InputBlock*> key;
  std::vector<std::pair<Scopes, std::size_t>> scopes;
  for (const DefiningTag& defined : naming.defined) {
    scopes.push_back(scopesOf(naming, tag, defined));
    key.insert(key.end(), scopes.back().first.begin(), scopes.back().first.end());
  }
  const auto [it, isNew] = known_.try_emplace({std::move(key), &naming});
  if (!isNew) {
    return it->second;
  }
  KnownNames& known = it->second;
  for (std::size_t i = 0; i < naming.defined.size(); ++i) {
    const DefiningTag& defined = naming.defined[i];
    const std::string_view holder = defined.block.substr(0, defined.block.rfind('/'));
    for (const InputBlock* const scope : scopes[i].first) {
      const std::size_t length = scopes[i].second;
      known.isKnown = known.isKnown || holder.size() <= length ||
                      !blocksAt(*scope, holder.substr(length)).empty();
      known.tables.push_back(namesWithin(*scope, length, defined));
    }
  }
  return known;
}

const InputTag* SetupNames::meshFor(const Naming& naming, const InputTag& tag) {
  for (const DefiningTag& defined : naming.defined) {
    const auto [scopes, length] = scopesOf(naming, tag, defined);
    if (scopes.size() != 1) {
      continue;
    }
    // Of several regions any may be meant.
    const Scopes blocks = blocksAt(*scopes.front(), defined.block.substr(length));
    if (blocks.size() == 1) {
      return blocks.front()->findTag(defined.tag);
    }
  }
  return nullptr;
}

}  // namespace KESTparse
