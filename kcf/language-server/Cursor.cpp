#include "language-server/Cursor.h"

#include <algorithm>
#include <optional>

#include "KESTparse/framework/Scanner.h"

namespace kcf::server {
namespace {

using KESTparse::NodeId;
using KESTparse::NodeKind;
using KESTparse::noNode;
using KESTparse::Span;
using KESTparse::SyntaxNode;
using KESTparse::SyntaxTree;

/// A block that is open at the cursor.
struct OpenBlock {
  std::string name;
  std::optional<NodeId> node = {};  // in the old tree, if it is there
  std::map<std::string, std::string> tags = {};
  std::map<std::string, int> blocks = {};
};

/// Where reading may begin: outside of tags, headers and comments, at or before `at`.
std::size_t safeBegin(const SyntaxTree& tree, std::size_t at) {
  for (std::size_t before = at + 1; before != at;) {
    before = at;
    const SyntaxNode& node = tree[tree.nodeAt(at)];
    const bool isInHeader = node.kind == NodeKind::block && at < std::size_t{node.mark} + 2;
    if (node.kind == NodeKind::tag || node.kind == NodeKind::stray || isInHeader) {
      at = node.begin;
    }
    const auto& comments = tree.comments();
    const auto comment =
        std::upper_bound(comments.begin(), comments.end(), at,
                         [](std::size_t place, const Span& span) { return place <= span.begin; });
    if (comment != comments.begin() && (comment - 1)->end >= at) {
      at = (comment - 1)->begin;
    }
  }
  return at;
}

/// The begin of the outermost block that is still open at `at`, though the tree ends it before,
/// since its brace is missing; `at` when there is none.
std::size_t beginOfUnclosed(const SyntaxTree& tree, std::size_t at) {
  const auto& nodes = tree.nodes();
  const auto behind = std::upper_bound(
      nodes.begin() + 1, nodes.end(), at,
      [](std::size_t place, const SyntaxNode& node) { return place < node.begin; });
  std::size_t begin = at;
  for (auto id = static_cast<NodeId>(behind - nodes.begin() - 1); id != noNode;
       id = tree[id].parent) {
    const SyntaxNode& node = tree[id];
    if (node.kind == NodeKind::block && !node.isClosed && node.end <= at) {
      begin = node.begin;
    }
  }
  return begin;
}

/// Follows the blocks of the text from `from` on.
class Events {
 public:
  static constexpr bool goesOn = true;

  Events(std::string_view text, std::size_t from, const OldTree& old, std::vector<OpenBlock>& open)
      : text_(text), from_(from), old_(&old), open_(&open) {}

  void open(Span name, std::size_t) {
    const std::string written(name.in(text_));
    ++open_->back().blocks[written];
    open_->push_back({written, nodeAt(from_ + name.begin)});
  }
  void close(std::size_t) {
    if (open_->size() > 1) {
      open_->pop_back();
    }
  }
  void tag(Span name, std::size_t, Span value) {
    open_->back().tags[std::string(name.in(text_))] = value.in(text_);
  }
  [[nodiscard]] bool fault(const KESTparse::SyntaxFault&) const { return goesOn; }
  void end(const KESTparse::Ending& how) { ending = how; }

  std::optional<KESTparse::Ending> ending;

 private:
  /// The block of the old tree that begins there.
  [[nodiscard]] std::optional<NodeId> nodeAt(std::size_t at) const {
    if (old_->tree == nullptr || at >= old_->unchanged) {
      return std::nullopt;
    }
    const NodeId id = old_->tree->nodeAt(at);
    const SyntaxNode& node = (*old_->tree)[id];
    return node.kind == NodeKind::block && node.begin == at ? std::optional(id) : std::nullopt;
  }

  std::string_view text_;
  std::size_t from_;
  const OldTree* old_;
  std::vector<OpenBlock>* open_;
};

void trim(std::string& value) {
  constexpr std::string_view blanks = " \t\r\n";
  value.erase(0, std::min(value.find_first_not_of(blanks), value.size()));
  value.erase(value.find_last_not_of(blanks) + 1);
}

/// Adds the blocks around the line of the byte at `at`, up to which the text is that of the tree.
/// \return where reading has to begin.
std::size_t openBlocks(const SyntaxTree& tree, std::string_view text, std::size_t at,
                       std::vector<OpenBlock>& open) {
  const std::size_t feed = at == 0 ? std::string_view::npos : text.rfind('\n', at - 1);
  open.front().node = noNode;
  if (feed == std::string_view::npos) {
    return 0;
  }
  const std::size_t from = beginOfUnclosed(tree, safeBegin(tree, feed));
  std::vector<NodeId> chain;
  for (NodeId id = tree.nodeAt(from); id != noNode; id = tree[id].parent) {
    if (tree[id].kind == NodeKind::block && tree[id].begin < from) {
      chain.push_back(id);
    }
  }
  for (; !chain.empty(); chain.pop_back()) {
    open.push_back({std::string(tree[chain.back()].name().in(tree.text())), chain.back()});
  }
  return from;
}

/// Adds what `parent` holds in the tree: what stands in front of `from`, and, as far as the text is
/// the same, what stands behind the cursor.
void addChildren(const SyntaxTree& tree, NodeId parent, Span but, OpenBlock& block) {
  for (NodeId id = tree[parent].firstChild; id != noNode; id = tree[id].next) {
    const SyntaxNode& node = tree[id];
    if (node.begin >= but.begin && node.begin <= but.end) {
      continue;
    }
    const std::string name(node.name().in(tree.text()));
    if (node.kind == NodeKind::block) {
      ++block.blocks[name];
    } else if (node.kind == NodeKind::tag) {
      block.tags.try_emplace(name, tree.valueOf(node).in(tree.text()));
    }
  }
}

bool isWordByte(char c) {
  return KESTparse::isNameCharacter(c) || static_cast<unsigned char>(c) >= 0x80;
}

/// What a word of a value ends at: names of files hold points and slashes.
bool endsItem(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '(' || c == ')' || c == ':';
}

void lookAtName(std::string_view text, std::size_t offset, Cursor& cursor) {
  cursor.word = {offset, offset};
  while (cursor.word.begin > 0 && isWordByte(text[cursor.word.begin - 1])) {
    --cursor.word.begin;
  }
  // Behind a name and a blank, only a brace or an equals sign can follow.
  std::size_t at = cursor.word.begin;
  while (at > 0 && (text[at - 1] == ' ' || text[at - 1] == '\t')) {
    --at;
  }
  cursor.stands = at < cursor.word.begin && at > 0 && isWordByte(text[at - 1])
                      ? Cursor::Stands::nowhere
                      : Cursor::Stands::inName;
  cursor.followsBrace = cursor.word.begin > 0 && text[cursor.word.begin - 1] == '{';
}

void lookAtValue(std::string_view text, std::size_t begin, std::size_t offset, Cursor& cursor) {
  cursor.word = {offset, offset};
  while (cursor.word.begin > begin && !endsItem(text[cursor.word.begin - 1])) {
    --cursor.word.begin;
  }
  cursor.stands = Cursor::Stands::inValue;
}

}  // namespace

Cursor cursorAt(std::string_view text, std::size_t offset, const OldTree& old) {
  std::vector<OpenBlock> open(1);
  std::size_t from = 0;
  if (old.tree != nullptr) {
    from = openBlocks(*old.tree, text, std::min(old.unchanged, offset), open);
  }
  std::vector<char> piece(text.begin() + static_cast<std::ptrdiff_t>(from),
                          text.begin() + static_cast<std::ptrdiff_t>(offset));
  std::vector<Span> comments;
  KESTparse::blankComments(piece, &comments);
  const std::string_view blanked(piece.data(), piece.size());
  Events events(blanked, from, old, open);
  KESTparse::Scanner(blanked, events).run();
  Cursor cursor;
  cursor.node = open.back().node;
  for (std::size_t i = 1; i < open.size(); ++i) {
    cursor.open.push_back(open[i].name);
  }
  if (!comments.empty() && comments.back().end == piece.size()) {
    return cursor;
  }
  const auto ending = events.ending.value_or(KESTparse::Ending{});
  if (ending.behind == KESTparse::Ending::Behind::equals) {
    cursor.tag = ending.name.in(blanked);
    lookAtValue(text, from + ending.at + 1, offset, cursor);
  } else {
    lookAtName(text, offset, cursor);
  }
  if (open.back().node) {
    // The line of the cursor may hold half a name.
    const std::size_t feed = text.find('\n', offset);
    addChildren(*old.tree, *open.back().node, {from, std::min(feed, text.size())}, open.back());
  }
  cursor.tags = std::move(open.back().tags);
  cursor.blocks = std::move(open.back().blocks);
  for (auto& [name, value] : cursor.tags) {
    trim(value);
  }
  return cursor;
}

}  // namespace kcf::server
