/// \file
/// A command file as the preview reads it: as far as it can be read.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/document/SyntaxTree.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/Message.h"

namespace kcf {

/// Something that is told beside the pictures: what is wrong with the setup, and what could not be
/// shown because of it.
struct Notice {
  KESTparse::Severity severity = KESTparse::Severity::error;
  std::string message;
  std::string help = {};     ///< how to mend it; may be empty
  std::string code = {};     ///< as the checker names it; empty for what only the preview tells
  std::string file = {};     ///< may be empty
  std::size_t line = 0;      ///< from 1; 0 for a file as a whole
  std::string subject = {};  ///< the part of the page that it is about, such as "mesh-0"
};

/// A tag in a command file.
struct SetupTag {
  std::string name;
  std::string value;
  std::size_t line = 0;
  const KESTparse::InputTag* schema = nullptr;  ///< null when the block has no such tag
};

/// A block in a command file; of an unknown one only name and line are known.
struct SetupBlock {
  std::string name;
  std::size_t line = 1;
  std::size_t lastLine = 1;
  const KESTparse::InputBlock* schema = nullptr;  ///< null for an unknown block
  const SetupBlock* parent = nullptr;
  std::vector<SetupTag> tags;
  std::deque<SetupBlock> blocks;

  /// The first sub-block at `path`, names between slashes; null when there is none.
  [[nodiscard]] const SetupBlock* find(std::string_view path) const;
  /// All sub-blocks of that name.
  [[nodiscard]] std::vector<const SetupBlock*> all(std::string_view blockName) const;
  /// The tag as it was given; null when it was not.
  [[nodiscard]] const SetupTag* tag(std::string_view tagName) const;
  /// The value of a tag, or its default; empty when there is neither.
  [[nodiscard]] std::string value(std::string_view tagName) const;
  /// The items of a list.
  [[nodiscard]] std::vector<std::string> items(std::string_view tagName) const;
  /// The numbers of a list or of a single value; what is no number is left out.
  [[nodiscard]] std::vector<double> numbers(std::string_view tagName) const;
  /// Tags that were left out and have a default that is in force.
  [[nodiscard]] std::vector<const KESTparse::InputTag*> defaults() const;
  /// The names from the root to this block: "/DOMAIN/KESTPLANE_2D".
  [[nodiscard]] std::string path() const;
};

/// The items of the list `text`.
std::vector<std::string> listItems(std::string_view text);

/// The blocks and tags of a command file, whose schema stands below the master `root`. What stands
/// there and is neither is left out.
std::unique_ptr<SetupBlock> readSetup(const KESTparse::SyntaxTree& text,
                                      const KESTparse::LineTable& lines,
                                      const KESTparse::InputBlock& root);

}  // namespace kcf
