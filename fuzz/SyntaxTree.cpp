/// \file
/// Fuzz target: the tree of a text, faulty or not, holds each byte of it, and formatting a text
/// without faults changes nothing of what it says.

#include "KESTparse/document/SyntaxTree.h"

#include <algorithm>
#include <string>
#include <vector>

#include "FuzzRun.h"
#include "KESTparse/document/Diff.h"
#include "KESTparse/document/Format.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace {

using fuzz::require;
using KESTparse::NodeId;
using KESTparse::NodeKind;
using KESTparse::Span;
using KESTparse::SyntaxNode;
using KESTparse::SyntaxTree;

/// Prints a tree: names, marks and values of the nodes, and what stands between them.
class Printer {
 public:
  explicit Printer(const SyntaxTree& tree) : tree_(&tree) {}

  std::string print() {
    std::vector<NodeId> open;
    for (NodeId id = 1; id < tree_->nodes().size(); ++id) {
      const SyntaxNode& node = (*tree_)[id];
      while (!open.empty() && open.back() != node.parent) {
        close((*tree_)[open.back()]);
        open.pop_back();
      }
      require(open.empty() ? node.parent == 0 : true, "a node stands outside of its parent");
      gap(node.begin);
      take(node.nameEnd);
      if (node.mark != SyntaxNode::nowhere) {
        gap(node.mark);
        take(node.mark + std::size_t{1});
      }
      if (node.kind == NodeKind::block) {
        open.push_back(id);
      } else {
        take(node.end);
      }
    }
    for (; !open.empty(); open.pop_back()) {
      close((*tree_)[open.back()]);
    }
    gap(tree_->text().size());
    return std::move(out_);
  }

 private:
  void close(const SyntaxNode& block) {
    if (block.isClosed) {
      gap(block.end - std::size_t{1});
      take(block.end);
      require(out_.back() == '}', "a block ends without a brace");
    } else {
      require(block.end <= at_, "a block ends behind what stands in it");
    }
  }

  /// White space and comments, and the byte that a brace takes with it.
  void gap(std::size_t end) {
    for (std::size_t i = at_; i < end; ++i) {
      const char c = tree_->blanked()[i];
      const bool isLost = i > 0 && tree_->blanked()[i - 1] == '{';
      require(c == ' ' || c == '\t' || c == '\n' || isLost || isMark(i), "text between the nodes");
    }
    take(end);
  }

  /// Whether a fault tells of the byte at `at` though no node holds it.
  [[nodiscard]] bool isMark(std::size_t at) const {
    return std::any_of(tree_->faults().begin(), tree_->faults().end(), [at](const auto& fault) {
      return fault.at.begin <= at && at < fault.at.end;
    });
  }

  void take(std::size_t end) {
    require(end >= at_ && end <= tree_->text().size(), "nodes overlap");
    out_ += tree_->text().substr(at_, end - at_);
    at_ = end;
  }

  const SyntaxTree* tree_;
  std::size_t at_ = 0;
  std::string out_;
};

/// What a text says, without its blanks: names, values, and comments where they stand among them.
std::string meaningOf(const SyntaxTree& tree) {
  std::string meaning;
  for (const char c : tree.text()) {
    if (c != ' ' && c != '\t' && c != '\r' && c != '\n') {
      meaning += c;
    }
  }
  return meaning;
}

/// The values of a tree that no formatter may touch, each behind its name.
std::string valuesOf(const SyntaxTree& tree) {
  std::string values;
  for (const SyntaxNode& node : tree.nodes()) {
    values += node.kind == NodeKind::block ? "{" : "";
    if (node.kind == NodeKind::tag) {
      const std::string_view value = tree.valueOf(node).in(tree.blanked());
      values += node.name().in(tree.text());
      values += "=";
      values += value.ends_with(')') ? std::string("(") : std::string(value);
    }
  }
  return values;
}

/// The text with other indentation and other blanks where that changes nothing; the text itself
/// where it would: within values and comments of several lines, and where lines stay as they are.
std::string inOtherBlanks(const SyntaxTree& tree) {
  const std::string& text = tree.text();
  if (text.find_first_of("\t\r") != std::string::npos || text.find("kcf:") != std::string::npos) {
    return text;
  }
  const auto hasFeed = [&text](Span span) {
    return span.in(text).find('\n') != std::string_view::npos;
  };
  std::vector<std::size_t> places;  // where a blank more means nothing
  for (const SyntaxNode& node : tree.nodes()) {
    if (node.kind == NodeKind::tag && hasFeed(tree.valueOf(node))) {
      return text;
    }
    if (node.kind == NodeKind::tag && tree.comments().empty()) {
      places.insert(places.end(), {node.nameEnd, node.mark + std::size_t{1}, node.end});
    }
  }
  if (std::any_of(tree.comments().begin(), tree.comments().end(), hasFeed)) {
    return text;
  }
  for (std::size_t feed = text.find('\n'); feed != std::string::npos;
       feed = text.find('\n', feed + 1)) {
    places.push_back(feed + 1);
  }
  places.push_back(0);
  std::sort(places.begin(), places.end());
  std::string result;
  std::size_t at = 0;
  for (const std::size_t place : places) {
    result += text.substr(at, place - at) + "   ";
    at = place;
  }
  return result + text.substr(at);
}

/// What the converter makes of a text: its document, or what ends it without places in the file.
std::string outcomeOf(const std::string& text) {
  fuzz::Outcome outcome = fuzz::outcomeOf(text);
  if (!outcome.converts) {
    std::erase_if(outcome.text, [](char c) { return c >= '0' && c <= '9'; });
  }
  return std::move(outcome.text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const KESTparse::KestrixInputRoot schema;
  const std::string text(fuzz::asText(data, size));
  const SyntaxTree tree(text);
  require(Printer(tree).print() == text, "printing the tree gives another text");
  for (std::size_t at = 0; at < text.size(); at += 1 + text.size() / 8) {
    const SyntaxNode& node = tree[tree.nodeAt(at)];
    require(node.begin <= at, "a node is found beside the place");
  }
  if (!tree.faults().empty()) {
    return 0;
  }
  const std::string formatted = KESTparse::formatted(tree, schema);
  const SyntaxTree again(formatted);
  require(again.faults().empty(), "the formatted text has faults");
  require(KESTparse::formatted(again, schema) == formatted, "formatting twice changes the text");
  const SyntaxTree other(inOtherBlanks(tree));
  require(KESTparse::formatted(other, schema) == formatted, "other blanks give another text");
  require(outcomeOf(formatted) == outcomeOf(text), "the converter does something else");
  require(valuesOf(again) == valuesOf(tree), "a value was changed");
  require(again.comments().size() == tree.comments().size(), "a comment was lost");
  std::string sortedBefore = meaningOf(tree);
  std::string sortedAfter = meaningOf(again);
  if (sortedBefore != sortedAfter) {
    // A comment between a name and its mark may have to move.
    std::sort(sortedBefore.begin(), sortedBefore.end());
    std::sort(sortedAfter.begin(), sortedAfter.end());
    require(sortedBefore == sortedAfter, "something was lost");
  }
  std::string mended = text;
  std::vector<KESTparse::Edit> edits = KESTparse::changeEdits(text, formatted);
  std::reverse(edits.begin(), edits.end());
  for (const KESTparse::Edit& edit : edits) {
    mended.replace(edit.at.begin, edit.at.size(), edit.text);
  }
  require(mended == formatted, "the differences do not lead to the formatted text");
  return 0;
}
