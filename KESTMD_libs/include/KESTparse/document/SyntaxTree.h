/// \file
/// The text of a command file as a tree that loses nothing of it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/framework/Scanner.h"

namespace KESTparse {

/// Place of a node in its tree. The file is node 0.
using NodeId = std::uint32_t;
inline constexpr NodeId noNode = 0;

enum class NodeKind : std::uint8_t {
  file,
  block,  ///< a header, braces, and what stands between them
  tag,    ///< a name, an equals sign and a value
  stray   ///< text that is neither, or a brace that closes nothing
};

/// A block, a tag, or what stands in place of one. All that stands between nodes is white space and
/// comments.
struct SyntaxNode {
  static constexpr std::uint32_t nowhere = UINT32_MAX;

  NodeKind kind = NodeKind::file;
  NodeId parent = noNode;
  NodeId firstChild = noNode;
  NodeId next = noNode;          ///< the next node of the parent; `noNode` for the last
  std::uint32_t begin = 0;       ///< of the name, or of stray text
  std::uint32_t nameEnd = 0;     ///< behind the name, or behind stray text
  std::uint32_t mark = nowhere;  ///< the opening brace or the equals sign; nowhere if missing
  std::uint32_t end = 0;         ///< behind the closing brace, or behind the value
  bool isClosed = false;         ///< of a block: whether its closing brace is there

  [[nodiscard]] Span name() const { return {begin, nameEnd}; }
  [[nodiscard]] Span whole() const { return {begin, end}; }
  /// What stands behind the equals sign of a tag, up to its line feed.
  [[nodiscard]] Span value() const { return {std::size_t{mark} + 1, end}; }
};

/// A fault of syntax in a tree.
enum class TreeFault : std::uint8_t {
  missingClosingBrace,  ///< of the block at the node; `at` is its header
  missingOpeningBrace,  ///< of the block at the node; `at` is its name
  strayClosingBrace,    ///< closes nothing
  missingName,          ///< in front of a brace or an equals sign
  missingEquals,        ///< several words on a line
  strayText,            ///< a name alone, or what no name may hold
  invalidName,          ///< a header or a tag whose name holds what it must not
  unopenedParenthesis,  ///< in a value
  unclosedList,         ///< the list ends with its line, though a parenthesis is open
  unfinished,           ///< the file ends within a value, or right behind an opening brace
  byteOrderMark,        ///< in front of the text
  swallowedByte         ///< stands right behind an opening brace and is dropped
};

struct TreeFaultAt {
  TreeFault kind;
  NodeId node;  ///< what is faulty, or holds the fault
  Span at;      ///< the smallest text that is wrong
};

/// The blocks that may stand in a block, as the schema has it: whether one called `name` may stand
/// in the innermost of `open`, which begins with the outermost.
using BlockOracle =
    std::function<bool(const std::vector<std::string_view>& open, std::string_view name)>;

/// The nodes of a text, with its faults. Missing and stray braces are found by the indentation of
/// lines, so that the rest of the file is read as it was meant.
class SyntaxTree {
 public:
  /// \param mayStand helps to find missing braces where indentation does not.
  explicit SyntaxTree(std::string text, const BlockOracle& mayStand = {});

  /// The text as it stands in the file.
  [[nodiscard]] const std::string& text() const { return text_; }
  /// The text with blanks for comments, carriage returns and a byte order mark.
  [[nodiscard]] std::string_view blanked() const { return {blanked_.data(), blanked_.size()}; }
  [[nodiscard]] const std::vector<SyntaxNode>& nodes() const { return nodes_; }
  [[nodiscard]] const SyntaxNode& operator[](NodeId id) const { return nodes_[id]; }
  /// In the order of the text.
  [[nodiscard]] const std::vector<TreeFaultAt>& faults() const { return faults_; }
  /// Where comments stand, in order, without the line feed behind them.
  [[nodiscard]] const std::vector<Span>& comments() const { return comments_; }
  /// The value of a tag without comments and white space at its ends.
  [[nodiscard]] Span valueOf(const SyntaxNode& tag) const;
  /// The smallest node around the byte at `at`.
  [[nodiscard]] NodeId nodeAt(std::size_t at) const;

 private:
  std::string text_;
  std::vector<char> blanked_;
  std::vector<Span> comments_;
  std::vector<SyntaxNode> nodes_;
  std::vector<TreeFaultAt> faults_;
};

/// A place as people count it: lines and columns from 1, columns in code points, the end excluded.
/// An invalid byte and a byte order mark count one.
struct LineColumn {
  std::uint32_t line = 1;
  std::uint32_t column = 1;
};

/// Finds the lines of a text.
class LineTable {
 public:
  explicit LineTable(std::string_view text);
  [[nodiscard]] LineColumn at(std::size_t offset) const;
  /// The line counted from 1, without its line feed.
  [[nodiscard]] Span line(std::uint32_t number) const;
  [[nodiscard]] std::size_t count() const { return starts_.size(); }

 private:
  struct Milestone {
    std::size_t at;
    std::uint32_t column;
  };

  std::string_view text_;
  std::vector<std::size_t> starts_;
  std::vector<Milestone> milestones_;
};

/// How many code points `text` has; an invalid byte counts one.
std::size_t countCodePoints(std::string_view text);

/// The length of the code point at the front of `text`, which is not empty; 1 for an invalid byte,
/// and `isValid` is then false.
std::size_t codePointLength(std::string_view text, bool& isValid);

}  // namespace KESTparse
