/// \file
/// What rules derive from the tree and ask for again and again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "KESTparse/base/GlobalValues.h"

namespace KESTparse {

/// Something that is derived from a tree. It is made when it is first asked for, and anew when a
/// tree was changed since.
template <class T>
class Derived {
 public:
  Derived() = default;
  /// An instance derives its own.
  Derived(const Derived& /*master*/) {}
  Derived& operator=(const Derived&) = delete;
  ~Derived() = default;

  /// The value; `make` returns it when it has to be made.
  template <class Make>
  const T& get(const Make& make) const {
    const std::uint64_t changes = GlobalValues::instance().treeChanges;
    if (madeAt_ != changes) {
      value_ = make();
      madeAt_ = changes;
    }
    return value_;
  }

 private:
  mutable T value_{};
  mutable std::uint64_t madeAt_ = 0;
};

/// Finds the items of a list by their names, in a time that does not depend on their number.
class NameIndex {
 public:
  /// Where a name stands in the list.
  struct Places {
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t count = 0;  ///< no other member means anything when it is 0
  };

  /// The places of `name` among `size` items; `nameOf` returns the name of the item at a place.
  template <class NameOf>
  Places find(std::string_view name, std::size_t size, const NameOf& nameOf) const {
    const auto& places = places_.get([size, &nameOf] { return index(size, nameOf); });
    const auto it = places.find(name);
    return it == places.end() ? Places{} : it->second;
  }
  /// The places of `name` among `blocks`, which are called as their `member` tells.
  template <class Block>
  Places find(std::string_view name, const std::vector<Block*>& blocks,
              std::string Block::*member) const {
    return find(name, blocks.size(), [&blocks, member](std::size_t i) -> std::string_view {
      return blocks[i]->*member;
    });
  }

 private:
  using Map = std::unordered_map<std::string_view, Places>;

  template <class NameOf>
  static Map index(std::size_t size, const NameOf& nameOf) {
    Map map(size);
    for (std::size_t i = 0; i < size; ++i) {
      Places& places = map.try_emplace(nameOf(i), Places{i, i, 0}).first->second;
      places.last = i;
      ++places.count;
    }
    return map;
  }

  Derived<Map> places_;
};

}  // namespace KESTparse
