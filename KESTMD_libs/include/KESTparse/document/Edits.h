/// \file
/// Changes of a command file by paths. What is not changed stays byte for byte.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/document/Diagnostic.h"
#include "KESTparse/document/SyntaxTree.h"

namespace KESTparse {

class InputBlock;

/// A name of a path, with what stands in brackets behind it.
struct PathStep {
  std::string name;
  std::string key;  ///< empty when there is none
};

/// `text` with `edits` in place, which do not overlap and stand in any order.
std::string edited(const std::string& text, std::vector<Edit> edits);

/// Whether a tag can be given `value` in a command file, so that it is read as it stands here: no
/// white space at its ends, no comment in it, all parentheses closed, one line outside of them.
bool isWritableValue(std::string_view value);

/// Why a change cannot be made, in one sentence without a full stop.
class EditFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Changes the text of a command file. A path such as
/// `DOMAIN/KESTPLANE_2D[reach]/HYDRAULICS/FRICTION/type` leads to a block or a tag. In brackets
/// stands the identifying name of a block that repeats, or its number among those of its name,
/// from 1; a tag that repeats has a number. Names at the front of a path may be left out as long as
/// it leads to one place only. Copies share what was read.
class TreeEditor {
 public:
  /// `root` is the master of the schema and outlives the editor. Throws an `EditFault` where the
  /// text has faults of syntax, and the exceptions of `SyntaxTree`.
  TreeEditor(std::string text, const InputBlock& root);

  /// Gives the tag at `path` a value. A tag that is not there is added where the schema has it in
  /// order, and so are the blocks that the path names. Whether the tag takes the value is not
  /// looked at. Throws an `EditFault`.
  void set(std::string_view path, std::string_view value);
  /// Takes away the blocks and tags at `paths`, all of them meant in the text as it stands, with
  /// their lines. Throws an `EditFault`.
  void remove(const std::vector<std::string>& paths);
  /// Throws an `EditFault` where `set` would, whatever the value is.
  void requireTag(std::string_view path) const;

  /// The text with all changes.
  [[nodiscard]] std::string text() const;
  /// The paths of the blocks that were added.
  [[nodiscard]] const std::vector<std::string>& added() const { return added_; }

 private:
  class Reading;
  struct Path;
  struct Target;

  [[nodiscard]] Target targetOf(const Path& path) const;
  [[noreturn]] void refuse(const Path& path) const;
  [[nodiscard]] NodeId tagAt(NodeId block, const Path& path) const;
  void insert(const Target& target, const Path& path, std::string_view value);
  void add(Edit edit);
  void settle();

  const InputBlock* root_;
  std::shared_ptr<const Reading> reading_;
  std::vector<Edit> pending_;  // of the text that was read
  std::vector<std::string> added_;
};

}  // namespace KESTparse
