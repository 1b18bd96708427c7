/// \file
/// What stands around the place where someone types.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/document/SyntaxTree.h"

namespace kcf::server {

/// The place where someone types, in a text that is half written.
struct Cursor {
  enum class Stands : std::uint8_t {
    nowhere,  ///< in a comment, or where nothing can follow
    inName,   ///< where a block or a tag begins
    inValue,
  };
  Stands stands = Stands::nowhere;
  /// The innermost block in the old tree, if it is there.
  std::optional<KESTparse::NodeId> node = {};
  std::vector<std::string> open;            ///< the names of the open blocks, the outermost first
  std::map<std::string, std::string> tags;  ///< of the innermost block: names and values
  std::map<std::string, int> blocks;        ///< of the innermost block: how many of a name
  std::string tag;                          ///< whose value it is
  KESTparse::Span word;                     ///< what is typed of a name or of an item of a value
  bool followsBrace = false;                ///< the byte in front of the word is an opening brace
};

/// A tree of the text as it was before; up to `unchanged` bytes the text is still that.
struct OldTree {
  const KESTparse::SyntaxTree* tree = nullptr;
  std::size_t unchanged = 0;
};

/// Looks around the byte at `offset`. It reads the text only from the nearest change on, so that it
/// takes no longer in a large file, as far as `old` knows it.
Cursor cursorAt(std::string_view text, std::size_t offset, const OldTree& old);

}  // namespace kcf::server
