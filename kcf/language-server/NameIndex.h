/// \file
/// The names of a command file: where each is given, and where it is used.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "KESTparse/document/SyntaxTree.h"
#include "KESTparse/vocabulary/Names.h"

namespace KESTparse {
class InputBlock;
class InputTag;
}  // namespace KESTparse

namespace kcf::server {

/// What the schema says of the names in the values of its tags, by prototypes.
class NamingTable {
 public:
  struct Row {
    std::string path;                                  ///< of the block
    std::vector<const KESTparse::Naming*> namings;     ///< what the value names
    const KESTparse::DefiningTag* defining = nullptr;  ///< whether it gives a name itself
  };

  explicit NamingTable(const KESTparse::InputBlock& root);
  /// Null for a tag without names.
  [[nodiscard]] const Row* find(const KESTparse::InputTag& prototype) const;

 private:
  std::unordered_map<const KESTparse::InputTag*, Row> rows_;
};

/// A name at a place.
struct NamePlace {
  KESTparse::Span at;
  KESTparse::NodeId tag = KESTparse::noNode;
  bool isDefinition = false;
  bool isNodeString = false;  ///< a mesh defines it, too
  std::uint32_t group = 0;    ///< the same for all places of one name
};

/// All names of a text.
class NameIndex {
 public:
  /// Takes a time linear in the text. Tree and table outlive the index.
  NameIndex(const KESTparse::SyntaxTree& tree, const KESTparse::InputBlock& root,
            const NamingTable& table);

  /// In the order of the text.
  [[nodiscard]] const std::vector<NamePlace>& all() const { return places_; }
  /// The name around the byte at `offset`, or right in front of it; null when there is none.
  [[nodiscard]] const NamePlace* at(std::size_t offset) const;
  /// All places of the name that stands at `place`.
  [[nodiscard]] std::vector<const NamePlace*> sameAs(const NamePlace& place) const;
  /// The mesh of the region that a node stands in, as it is named; empty when it names none.
  [[nodiscard]] std::string meshOf(KESTparse::NodeId node) const;

  /// Where a value is written: the innermost block, and what stands of the value.
  struct Asked {
    KESTparse::NodeId block = KESTparse::noNode;  ///< no node where it is not in the tree yet
    const KESTparse::InputTag* prototype = nullptr;
    std::string_view item = {};  ///< as far as it is written
  };
  /// The names that may be meant, each once; of a position the region, and behind a dot the place.
  [[nodiscard]] std::vector<std::string> offered(const Asked& asked) const;

 private:
  struct Use {
    std::uint32_t place;
    const KESTparse::Naming* naming;
    std::string_view path;
  };

  void add(KESTparse::NodeId node, const NamingTable::Row& row);
  std::uint32_t place(KESTparse::Span at, KESTparse::NodeId node);
  /// \return whether it is given elsewhere.
  bool resolve(const Use& use);
  /// Whether what stands at `place` is a name that the tag `defined` gives.
  [[nodiscard]] bool defines(const NamePlace& place, const KESTparse::DefiningTag& defined) const;
  void offer(const Asked& asked, const NamingTable::Row& row, const KESTparse::Naming& naming,
             std::vector<std::string>& names) const;
  [[nodiscard]] bool isInScope(KESTparse::NodeId from, std::string_view path,
                               const KESTparse::Naming& naming, std::string_view region,
                               const NamePlace& definition,
                               const KESTparse::DefiningTag& defined) const;
  [[nodiscard]] std::string_view regionOf(KESTparse::NodeId block, std::string_view tag,
                                          const KESTparse::Naming& naming) const;
  [[nodiscard]] bool holdsFor(KESTparse::NodeId block, const KESTparse::Naming& naming) const;
  [[nodiscard]] KESTparse::NodeId ancestor(KESTparse::NodeId node, std::string_view path) const;
  [[nodiscard]] KESTparse::NodeId child(KESTparse::NodeId block, std::string_view name) const;
  [[nodiscard]] std::string_view valueAt(KESTparse::NodeId tag) const;
  std::uint32_t leader(std::uint32_t place);

  const KESTparse::SyntaxTree* tree_;
  const NamingTable* table_;
  std::vector<NamePlace> places_;
  std::vector<Use> uses_;
  std::unordered_map<std::string, std::vector<std::uint32_t>> definitions_;
  std::vector<std::vector<std::uint32_t>> groups_;
};

}  // namespace kcf::server
