#include "language-server/NameIndex.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/vocabulary/Places.h"

namespace kcf::server {

using KESTparse::DefiningTag;
using KESTparse::InputBlock;
using KESTparse::InputTag;
using KESTparse::NamedThing;
using KESTparse::NamePart;
using KESTparse::NameScope;
using KESTparse::Naming;
using KESTparse::NodeId;
using KESTparse::NodeKind;
using KESTparse::noNode;
using KESTparse::Span;
using KESTparse::SyntaxNode;
using KESTparse::SyntaxTree;

namespace {

std::string lower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return result;
}

bool isEqual(std::string_view a, std::string_view b, bool ignoresCase) {
  return ignoresCase ? lower(a) == lower(b) : a == b;
}

/// Definitions of a tag are kept under this key, with the name behind it in lower case.
std::string keyOf(const DefiningTag& defined) {
  return std::string(defined.block) + "/" + std::string(defined.tag) + "=";
}

std::size_t depthOf(std::string_view path) {
  return static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
}

/// What the schema has at each node: blocks only.
std::vector<const InputBlock*> mastersOf(const SyntaxTree& tree, const InputBlock& root) {
  std::vector<const InputBlock*> masters(tree.nodes().size(), nullptr);
  masters[0] = &root;
  for (NodeId id = 1; id < masters.size(); ++id) {
    const SyntaxNode& node = tree[id];
    const InputBlock* const parent = masters[node.parent];
    if (node.kind != NodeKind::block || parent == nullptr) {
      continue;
    }
    const int position = parent->getLogicalBlockPosition(node.name().in(tree.text()));
    if (position >= 0) {
      masters[id] = &parent->getLogicalBlock(static_cast<std::size_t>(position));
    }
  }
  return masters;
}

}  // namespace

NamingTable::NamingTable(const InputBlock& root) {
  for (const KESTparse::Place& place : KESTparse::placesOf(root)) {
    for (std::size_t i = 0; i < place.block->getLogicalNumTags(); ++i) {
      const InputTag& tag = place.block->getLogicalTag(i);
      Row row{place.path, KESTparse::namingsOf(place.path, tag.getName()),
              KESTparse::definingTag(place.path, tag.getName())};
      if (!row.namings.empty() || row.defining != nullptr) {
        rows_.emplace(&tag, std::move(row));
      }
    }
  }
}

const NamingTable::Row* NamingTable::find(const InputTag& prototype) const {
  const auto row = rows_.find(&prototype);
  return row == rows_.end() ? nullptr : &row->second;
}

NameIndex::NameIndex(const SyntaxTree& tree, const InputBlock& root, const NamingTable& table)
    : tree_(&tree), table_(&table) {
  const std::vector<const InputBlock*> masters = mastersOf(tree, root);
  for (NodeId id = 1; id < masters.size(); ++id) {
    const SyntaxNode& node = tree[id];
    const InputBlock* const block = masters[node.parent];
    if (node.kind != NodeKind::tag || block == nullptr) {
      continue;
    }
    const int position = block->getLogicalTagPosition(node.name().in(tree.text()));
    const NamingTable::Row* const row =
        position < 0 ? nullptr
                     : table.find(block->getLogicalTag(static_cast<std::size_t>(position)));
    if (row != nullptr) {
      add(id, *row);
    }
  }
  std::vector<std::uint32_t> led;
  for (const Use& use : uses_) {
    if (resolve(use)) {
      led.push_back(use.place);
    }
  }
  // What takes its name from elsewhere does not give it, though others may name it.
  for (const std::uint32_t place : led) {
    places_[place].isDefinition = false;
  }
  groups_.resize(places_.size());
  for (std::uint32_t i = 0; i < places_.size(); ++i) {
    places_[i].group = leader(i);
    groups_[places_[i].group].push_back(i);
  }
}

void NameIndex::add(NodeId node, const NamingTable::Row& row) {
  // Comments within a list stand for blanks.
  const Span value = tree_->valueOf((*tree_)[node]);
  const std::string_view text = value.in(tree_->blanked());
  const auto spanOf = [&value](const KESTparse::NameInValue& name) {
    return Span{value.begin + name.begin, value.begin + name.end};
  };
  if (row.defining != nullptr) {
    const std::string key = keyOf(*row.defining);
    for (const KESTparse::NameInValue& name : KESTparse::namesIn(text, row.defining->part)) {
      const std::uint32_t at = place(spanOf(name), node);
      places_[at].isDefinition = true;
      definitions_[key + lower(name.in(text))].push_back(at);
    }
  }
  for (const Naming* naming : row.namings) {
    const bool isNodeString = naming->thing == NamedThing::nodeString;
    if (naming->thing != NamedThing::tagValue && !isNodeString) {
      continue;
    }
    for (const KESTparse::NameInValue& name : KESTparse::namesIn(text, naming->part)) {
      const std::uint32_t at = place(spanOf(name), node);
      places_[at].isNodeString = places_[at].isNodeString || isNodeString;
      if (!isNodeString) {
        uses_.push_back({at, naming, row.path});
      }
    }
  }
}

/// The place at that span, which is among the last ones when it is there already.
std::uint32_t NameIndex::place(Span at, NodeId node) {
  for (std::size_t i = places_.size(); i > 0 && places_[i - 1].tag == node; --i) {
    if (places_[i - 1].at == at) {
      return static_cast<std::uint32_t>(i - 1);
    }
  }
  places_.push_back({at, node, false, false, static_cast<std::uint32_t>(places_.size())});
  return static_cast<std::uint32_t>(places_.size() - 1);
}

std::uint32_t NameIndex::leader(std::uint32_t place) {
  while (places_[place].group != place) {
    places_[place].group = places_[places_[place].group].group;
    place = places_[place].group;
  }
  return place;
}

bool NameIndex::resolve(const Use& use) {
  const NamePlace& used = places_[use.place];
  const NodeId block = (*tree_)[used.tag].parent;
  if (!holdsFor(block, *use.naming)) {
    return false;
  }
  bool isResolved = false;
  const std::string_view name = used.at.in(tree_->text());
  const std::string_view region =
      regionOf(block, (*tree_)[used.tag].name().in(tree_->text()), *use.naming);
  for (const DefiningTag& defined : use.naming->defined) {
    const auto found = definitions_.find(keyOf(defined) + lower(name));
    if (found == definitions_.end()) {
      continue;
    }
    for (const std::uint32_t definition : found->second) {
      const NamePlace& given = places_[definition];
      if (isEqual(given.at.in(tree_->text()), name, use.naming->ignoresCase) &&
          isInScope(used.tag, use.path, *use.naming, region, given, defined)) {
        places_[leader(use.place)].group = leader(definition);
        isResolved = isResolved || definition != use.place;
      }
    }
  }
  return isResolved;
}

bool NameIndex::holdsFor(NodeId block, const Naming& naming) const {
  return naming.onlyForType.empty() || valueAt(child(block, "type")) == naming.onlyForType;
}

bool NameIndex::isInScope(NodeId from, std::string_view path, const Naming& naming,
                          std::string_view region, const NamePlace& definition,
                          const DefiningTag& defined) const {
  if (naming.scope == NameScope::shared) {
    const std::string_view shared = KESTparse::sharedBlock(path, defined);
    return ancestor(from, shared) == ancestor(definition.tag, shared);
  }
  constexpr std::string_view regions = "/DOMAIN/REGION";
  const NodeId owner = ancestor(definition.tag, regions);
  return !region.empty() &&
         isEqual(valueAt(child(owner, "region_name")), region, naming.scope == NameScope::plane);
}

std::string_view NameIndex::regionOf(NodeId block, std::string_view tag,
                                     const Naming& naming) const {
  std::string path = KESTparse::regionTagOf(naming, tag);
  constexpr std::string_view up = "../";
  while (path.starts_with(up)) {
    path.erase(0, up.size());
    block = (*tree_)[block].parent;
  }
  if (path.empty()) {
    return {};
  }
  const std::string_view value = valueAt(child(block, path));
  return naming.scope == NameScope::inFront ? value.substr(0, value.find('.')) : value;
}

/// The block around a node that stands as deep as a path says.
NodeId NameIndex::ancestor(NodeId node, std::string_view path) const {
  std::size_t depth = 0;
  for (NodeId at = node; at != noNode; at = (*tree_)[at].parent) {
    ++depth;
  }
  for (const std::size_t wanted = depthOf(path); depth > wanted; --depth) {
    node = (*tree_)[node].parent;
  }
  return node;
}

NodeId NameIndex::child(NodeId block, std::string_view name) const {
  for (NodeId id = (*tree_)[block].firstChild; id != noNode; id = (*tree_)[id].next) {
    if ((*tree_)[id].name().in(tree_->text()) == name) {
      return id;
    }
  }
  return noNode;
}

std::string_view NameIndex::valueAt(NodeId tag) const {
  const SyntaxNode& node = (*tree_)[tag];
  return node.kind == NodeKind::tag ? tree_->valueOf(node).in(tree_->text()) : std::string_view();
}

const NamePlace* NameIndex::at(std::size_t offset) const {
  auto behind = std::upper_bound(
      places_.begin(), places_.end(), offset,
      [](std::size_t byte, const NamePlace& place) { return byte < place.at.begin; });
  return behind != places_.begin() && offset <= (behind - 1)->at.end ? &*(behind - 1) : nullptr;
}

std::vector<const NamePlace*> NameIndex::sameAs(const NamePlace& place) const {
  std::vector<const NamePlace*> same;
  for (const std::uint32_t each : groups_[place.group]) {
    same.push_back(&places_[each]);
  }
  return same;
}

std::string NameIndex::meshOf(NodeId node) const {
  constexpr std::string_view regions = "/DOMAIN/REGION";
  const NodeId geometry = child(ancestor(node, regions), "GEOMETRY");
  return geometry == noNode ? std::string() : std::string(valueAt(child(geometry, "file")));
}

bool NameIndex::defines(const NamePlace& place, const DefiningTag& defined) const {
  const std::string_view text = tree_->text();
  if ((*tree_)[place.tag].name().in(text) != defined.tag) {
    return false;
  }
  const auto same = definitions_.find(keyOf(defined) + lower(place.at.in(text)));
  return same != definitions_.end() &&
         std::any_of(same->second.begin(), same->second.end(),
                     [&](std::uint32_t each) { return &places_[each] == &place; });
}

void NameIndex::offer(const Asked& asked, const NamingTable::Row& row, const Naming& naming,
                      std::vector<std::string>& names) const {
  const bool isPlace = naming.part == NamePart::place;
  const std::string_view region = isPlace
                                      ? asked.item.substr(0, asked.item.find('.'))
                                      : regionOf(asked.block, asked.prototype->getName(), naming);
  for (const DefiningTag& defined : naming.defined) {
    for (const NamePlace& given : places_) {
      // A block that is not in the tree yet may be in any region.
      if (defines(given, defined) &&
          (asked.block == noNode ||
           isInScope(asked.block, row.path, naming, region, given, defined))) {
        const std::string_view name = given.at.in(tree_->text());
        names.push_back(isPlace ? fmt::format("{}.{}", region, name) : std::string(name));
      }
    }
  }
}

std::vector<std::string> NameIndex::offered(const Asked& asked) const {
  std::vector<std::string> names;
  const NamingTable::Row* const row = table_->find(*asked.prototype);
  if (row == nullptr) {
    return names;
  }
  const bool hasDot = asked.item.find('.') != std::string_view::npos;
  for (const Naming* naming : row->namings) {
    const bool fits = naming->part == NamePart::place    ? hasDot
                      : naming->part == NamePart::region ? !hasDot
                                                         : true;
    if (fits && naming->thing == NamedThing::tagValue) {
      offer(asked, *row, *naming, names);
    }
  }
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

}  // namespace kcf::server
