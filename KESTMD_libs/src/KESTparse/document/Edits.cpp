#include "KESTparse/document/Edits.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

#include "KESTparse/base/Suggestion.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/vocabulary/Places.h"

namespace KESTparse {
namespace {

std::string stepText(std::string_view name, std::string_view key) {
  return key.empty() ? std::string(name) : fmt::format("{}[{}]", name, key);
}

/// The number that `key` is; nothing when it is none.
std::optional<std::size_t> numberOf(std::string_view key) {
  std::size_t number = 0;
  const auto [stop, error] = std::from_chars(key.data(), key.data() + key.size(), number);
  const bool isNumber = error == std::errc{} && stop == key.data() + key.size() && number > 0;
  return isNumber ? std::optional(number) : std::nullopt;
}

/// Names without the keys, as the schema has them.
std::string schemaPath(const PathStep* begin, const PathStep* end) {
  std::string path;
  for (; begin != end; ++begin) {
    path += (path.empty() ? "" : "/") + begin->name;
  }
  return path;
}

const InputBlock* childOf(const InputBlock& block, std::string_view name) {
  const int position = block.getLogicalBlockPosition(name);
  return position < 0 ? nullptr : &block.getLogicalBlock(static_cast<std::size_t>(position));
}

/// Says what else was meant, where something is known.
std::string didYouMean(std::string_view nearest) {
  return nearest.empty() ? "" : fmt::format(". Did you mean '{}'?", nearest);
}

std::string listed(const std::vector<std::string>& paths) {
  constexpr std::size_t most = 8;
  std::string text;
  for (std::size_t i = 0; i < std::min(paths.size(), most); ++i) {
    text += "\n  " + paths[i];
  }
  return paths.size() > most ? fmt::format("{}\n  and {} more", text, paths.size() - most) : text;
}

/// The tag `name` of the schema's blocks that is most like it.
std::string_view nearestTag(const std::vector<Place>& places, std::string_view name) {
  std::set<std::string_view> names;
  for (const Place& place : places) {
    for (std::size_t i = 0; i < place.block->getLogicalNumTags(); ++i) {
      names.insert(place.block->getLogicalTag(i).getName());
    }
  }
  return nearestName(name, {names.begin(), names.end()});
}

}  // namespace

std::string edited(const std::string& text, std::vector<Edit> edits) {
  std::stable_sort(edits.begin(), edits.end(), [](const Edit& one, const Edit& other) {
    return std::tie(one.at.begin, one.at.end) < std::tie(other.at.begin, other.at.end);
  });
  std::string result;
  std::size_t done = 0;
  for (const Edit& edit : edits) {
    result.append(text, done, edit.at.begin - done);
    result += edit.text;
    done = edit.at.end;
  }
  return result.append(text, done);
}

bool isWritableValue(std::string_view value) {
  // The name stands for any; the value is one if it is read back as it is.
  const SyntaxTree tree("x = " + std::string(value) + "\n");
  return tree.faults().empty() && tree.nodes().size() == 2 && !value.empty() &&
         value.find('\r') == std::string_view::npos && tree.comments().empty() &&
         tree.valueOf(tree[1]).in(tree.text()) == value;
}

struct TreeEditor::Path {
  bool isWhole = false;  // begins with a slash
  std::vector<PathStep> steps;

  explicit Path(std::string_view text);
  [[nodiscard]] std::string shown() const;
};

TreeEditor::Path::Path(std::string_view text) : isWhole(text.starts_with('/')) {
  const std::string whole(text);
  text.remove_prefix(isWhole ? 1 : 0);
  while (true) {
    const std::size_t nameEnd = std::min(text.find_first_of("/["), text.size());
    PathStep step{std::string(text.substr(0, nameEnd)), {}};
    text.remove_prefix(nameEnd);
    if (text.starts_with('[')) {
      const std::size_t close = text.find(']');
      step.key = text.substr(1, std::min(close, text.size()) - 1);
      text.remove_prefix(std::min(close, text.size() - 1) + 1);
      if (close == std::string_view::npos || step.key.empty()) {
        throw EditFault(
            fmt::format("'{}' is no path: a name or a number in brackets is missing or "
                        "the bracket is not closed",
                        whole));
      }
    }
    if (!isWritableName(step.name) || (!text.empty() && text.front() != '/')) {
      throw EditFault(fmt::format(
          "'{}' is no path: it must be names with '/' between them, such as FRICTION/type", whole));
    }
    steps.push_back(std::move(step));
    if (text.empty()) {
      return;
    }
    text.remove_prefix(1);
  }
}

std::string TreeEditor::Path::shown() const {
  std::string text = isWhole ? "/" : "";
  for (std::size_t i = 0; i < steps.size(); ++i) {
    text += (i == 0 ? "" : "/") + stepText(steps[i].name, steps[i].key);
  }
  return text;
}

/// A text without faults, and what its nodes are in the schema.
class TreeEditor::Reading {
 public:
  Reading(std::string text, const InputBlock& root) : tree(std::move(text)) {
    if (!tree.faults().empty()) {
      throw EditFault("the text has faults of syntax");
    }
    masters_.reserve(tree.nodes().size());
    masters_.push_back(&root);
    for (NodeId id = 1; id < tree.nodes().size(); ++id) {
      const InputBlock* const parent = masters_[tree[id].parent];
      masters_.push_back(parent == nullptr || tree[id].kind != NodeKind::block
                             ? nullptr
                             : childOf(*parent, nameOf(id)));
    }
    usesReturns_ = this->text().find("\r\n") != std::string::npos;
  }

  /// Nodes of one kind below one parent that are called the same.
  using Likes = std::map<std::tuple<NodeId, std::string_view, NodeKind>, std::vector<NodeId>>;

  const SyntaxTree tree;

  [[nodiscard]] const std::string& text() const { return tree.text(); }
  [[nodiscard]] std::string_view nameOf(NodeId id) const { return tree[id].name().in(text()); }
  [[nodiscard]] bool isBlock(NodeId id) const {
    return id == noNode || tree[id].kind == NodeKind::block;
  }
  /// The master of a block; null for an unknown one and for tags.
  [[nodiscard]] const InputBlock* masterOf(NodeId id) const { return masters_[id]; }
  [[nodiscard]] std::string_view lineEnd() const { return usesReturns_ ? "\r\n" : "\n"; }

  /// The children of a node that are called so, in order.
  [[nodiscard]] std::vector<NodeId> childrenCalled(NodeId parent, std::string_view name,
                                                   NodeKind kind) const {
    std::vector<NodeId> found;
    for (NodeId id = tree[parent].firstChild; id != noNode; id = tree[id].next) {
      if (tree[id].kind == kind && nameOf(id) == name) {
        found.push_back(id);
      }
    }
    return found;
  }

  /// The name that tells a block from its like; empty when it has none.
  [[nodiscard]] std::string_view identityOf(NodeId block) const {
    const InputBlock* const master = masters_[block];
    if (master == nullptr || master->getIdentifyingTags().empty()) {
      return {};
    }
    const auto tags = childrenCalled(block, master->getIdentifyingTags().front(), NodeKind::tag);
    return tags.empty() ? std::string_view() : tree.valueOf(tree[tags.front()]).in(text());
  }

  /// The path of a node that leads to it and to nothing else.
  [[nodiscard]] std::string pathOf(NodeId id) const {
    Likes likes;
    return pathOf(id, likes);
  }
  [[nodiscard]] std::string pathOf(NodeId id, Likes& likes) const {
    std::string path;
    for (; id != noNode; id = tree[id].parent) {
      std::string key(identityOf(id));
      if (key.empty()) {
        const auto [like, isNew] = likes.try_emplace({tree[id].parent, nameOf(id), tree[id].kind});
        if (isNew) {
          like->second = childrenCalled(tree[id].parent, nameOf(id), tree[id].kind);
        }
        const std::vector<NodeId>& all = like->second;
        const auto place = std::lower_bound(all.begin(), all.end(), id) - all.begin();
        key = all.size() > 1 ? std::to_string(place + 1) : "";
      }
      path.insert(0, stepText(nameOf(id), key) + (path.empty() ? "" : "/"));
    }
    return path;
  }

  [[nodiscard]] std::vector<std::string> pathsOf(const std::vector<NodeId>& nodes) const {
    Likes likes;
    std::vector<std::string> paths;
    paths.reserve(nodes.size());
    for (const NodeId id : nodes) {
      paths.push_back(pathOf(id, likes));
    }
    return paths;
  }

  /// The child that a step with a key leads to; `noNode` when there is none.
  [[nodiscard]] NodeId instance(NodeId parent, const PathStep& step, NodeKind kind) const {
    const std::vector<NodeId> like = childrenCalled(parent, step.name, kind);
    const auto named = std::find_if(like.begin(), like.end(),
                                    [&](NodeId id) { return identityOf(id) == step.key; });
    if (named != like.end()) {
      return *named;
    }
    const std::optional<std::size_t> number = numberOf(step.key);
    return number && *number <= like.size() ? like[*number - 1] : noNode;
  }

  /// The nodes at whose end of their paths the first `count` of `path` stand; with none, all
  /// blocks.
  [[nodiscard]] std::vector<NodeId> ending(const Path& path, std::size_t count,
                                           std::optional<NodeKind> kind) const {
    std::vector<NodeId> found;
    std::map<std::pair<NodeId, std::size_t>, NodeId> instances;  // by parent and step
    const auto isAt = [&](NodeId id, std::size_t step) {
      const PathStep& asked = path.steps[step];
      if (nameOf(id) != asked.name || asked.key.empty()) {
        return nameOf(id) == asked.name;
      }
      const auto [known, isNew] = instances.try_emplace({tree[id].parent, step}, noNode);
      if (isNew) {
        known->second = instance(tree[id].parent, asked, tree[id].kind);
      }
      return known->second == id;
    };
    for (NodeId id = 0; id < tree.nodes().size(); ++id) {
      if (kind ? tree[id].kind != *kind && (id != noNode || *kind != NodeKind::block)
               : id == noNode) {
        continue;
      }
      NodeId at = id;
      std::size_t left = count;
      while (left > 0 && at != noNode && isAt(at, left - 1)) {
        at = tree[at].parent;
        --left;
      }
      if (left == 0 && (!path.isWhole || at == noNode)) {
        found.push_back(id);
      }
    }
    return found;
  }

  /// Where a new line may begin behind `at`, and whether one begins there.
  [[nodiscard]] std::pair<std::size_t, bool> lineBehind(std::size_t at) const {
    const auto& comments = tree.comments();
    auto comment =
        std::lower_bound(comments.begin(), comments.end(), at,
                         [](const Span& span, std::size_t place) { return span.end <= place; });
    while (at < text().size()) {
      if (comment != comments.end() && comment->begin <= at) {
        at = comment->end;
        ++comment;
      } else if (text()[at] == '\n') {
        return {at + 1, true};
      } else if (isBlank(text()[at])) {
        ++at;
      } else {
        break;
      }
    }
    return {at, false};
  }

  /// The white space at the front of the line of `at`.
  [[nodiscard]] std::string indentAt(std::size_t at) const {
    const std::size_t begin = lineBegin(at);
    const std::size_t end = std::min(text().find_first_not_of(" \t", begin), text().size());
    return text().substr(begin, std::min(end, at) - begin);
  }

  [[nodiscard]] bool startsLine(NodeId id) const {
    const std::size_t at = tree[id].begin;
    return lineBegin(at) + indentAt(at).size() == at;
  }

  /// What stands in front of the lines within a block.
  [[nodiscard]] std::string indentWithin(NodeId block) const {
    for (NodeId id = tree[block].firstChild; id != noNode; id = tree[id].next) {
      if (startsLine(id)) {
        return indentAt(tree[id].begin);
      }
    }
    return block == noNode ? "" : indentAt(tree[block].begin) + std::string(indentStep);
  }

  /// The edit that adds `lines`, which are whole, for what stands at `rank` in the schema of
  /// `block`: tags before blocks, each in order.
  [[nodiscard]] Edit insertion(NodeId block, std::pair<bool, int> rank, std::string lines) const {
    NodeId before = noNode;
    std::pair<bool, int> rankBefore;
    for (NodeId id = tree[block].firstChild; id != noNode; id = tree[id].next) {
      const std::pair<bool, int> other = rankOf(*masters_[block], nameOf(id), isBlock(id));
      if (other.second >= 0 && other <= rank && (before == noNode || other >= rankBefore)) {
        before = id;
        rankBefore = other;
      }
    }
    if (before == noNode && block == noNode) {
      return {{0, 0}, std::move(lines)};
    }
    const auto [at, isLine] =
        lineBehind(before == noNode ? tree[block].mark + std::size_t{1} : tree[before].end);
    if (!isLine) {
      lines.insert(0, lineEnd());
      if (at < text().size()) {
        lines += text()[at] == '}' ? indentAt(tree[block].begin) : indentWithin(block);
      }
    }
    return {{at, at}, std::move(lines)};
  }

  /// The place of a child in the schema of its block; negative when it is unknown.
  static std::pair<bool, int> rankOf(const InputBlock& master, std::string_view name,
                                     bool isBlock) {
    return {isBlock,
            isBlock ? master.getLogicalBlockPosition(name) : master.getLogicalTagPosition(name)};
  }

  /// The edit that takes a node away, with its line where nothing else stands on it.
  [[nodiscard]] Edit removal(NodeId id) const {
    const SyntaxNode& node = tree[id];
    std::size_t end = node.end;
    if (node.kind == NodeKind::tag) {
      const Span value = tree.valueOf(node);
      end = value.empty() ? node.mark + std::size_t{1} : value.end;
    }
    const std::size_t behind = lineBehind(end).first;
    // A comment that goes on below says more than the line.
    const std::size_t feed = text().find('\n', end);
    const bool isAlone = feed == std::string::npos ? behind == text().size() : feed + 1 == behind;
    if (startsLine(id) && isAlone) {
      return {{lineBegin(node.begin), behind}, {}};
    }
    return {{node.begin, end}, {}};
  }

  static constexpr std::string_view indentStep = "  ";

 private:
  static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

  [[nodiscard]] std::size_t lineBegin(std::size_t at) const {
    const std::size_t feed = at == 0 ? std::string::npos : text().rfind('\n', at - 1);
    return feed == std::string::npos ? 0 : feed + 1;
  }

  std::vector<const InputBlock*> masters_;
  bool usesReturns_ = false;
};

/// Where a tag is, or where it is to be.
struct TreeEditor::Target {
  NodeId block = noNode;    // there
  std::size_t missing = 0;  // how many of the last blocks of the path are not there
};

TreeEditor::TreeEditor(std::string text, const InputBlock& root)
    : root_(&root), reading_(std::make_shared<const Reading>(std::move(text), root)) {}

TreeEditor::Target TreeEditor::targetOf(const Path& path) const {
  const Reading& reading = *reading_;
  const PathStep& tag = path.steps.back();
  const std::size_t blocks = path.steps.size() - 1;
  for (std::size_t missing = 0; missing <= blocks; ++missing) {
    std::vector<NodeId> found = reading.ending(path, blocks - missing, NodeKind::block);
    std::erase_if(found, [&](NodeId id) {
      const InputBlock* master = reading.masterOf(id);
      for (std::size_t i = blocks - missing; i < blocks && master != nullptr; ++i) {
        master = childOf(*master, path.steps[i].name);
      }
      return master == nullptr || master->getLogicalTagPosition(tag.name) < 0;
    });
    if (found.size() > 1) {
      std::vector<std::string> paths = reading.pathsOf(found);
      for (std::string& each : paths) {
        for (std::size_t i = blocks - missing; i < path.steps.size(); ++i) {
          each += (each.empty() ? "" : "/") + stepText(path.steps[i].name, path.steps[i].key);
        }
      }
      throw EditFault(fmt::format("'{}' may be one of several; name more of its path:{}",
                                  path.shown(), listed(paths)));
    }
    if (found.size() == 1) {
      return {found.front(), missing};
    }
  }
  refuse(path);
}

/// Says why a tag that the file has no block for cannot be there.
void TreeEditor::refuse(const Path& path) const {
  const PathStep& tag = path.steps.back();
  const std::size_t blocks = path.steps.size() - 1;
  const std::string name = schemaPath(path.steps.data(), path.steps.data() + blocks);
  const std::vector<Place> places = blocks == 0 ? placesOf(*root_) : findPlaces(*root_, name);
  const bool isKnown = std::any_of(places.begin(), places.end(), [&](const Place& place) {
    return place.block->getLogicalTagPosition(tag.name) >= 0;
  });
  if (isKnown) {
    throw EditFault(fmt::format(
        "the file has no block that '{}' could stand in; begin the path with DOMAIN or PROJECT to "
        "add what is missing",
        path.shown()));
  }
  if (places.empty()) {
    throw EditFault(fmt::format("there is no block '{}'. Did you mean {}?", name,
                                fmt::join(nearestPaths(*root_, name), ", ")));
  }
  throw EditFault(fmt::format("there is no tag '{}'{}{}", tag.name,
                              blocks == 0 ? "" : fmt::format(" in '{}'", name),
                              didYouMean(nearestTag(places, tag.name))));
}

void TreeEditor::requireTag(std::string_view path) const {
  static_cast<void>(targetOf(Path(path)));
}

namespace {

/// Refuses a key that no block can have.
/// \param known the paths of the blocks of that name.
void requireFreeKey(const PathStep& step, const InputBlock& master,
                    const std::vector<std::string>& known, bool isLast) {
  if (!master.isRepeatable()) {
    throw EditFault(
        fmt::format("'{}' stands once in its block and has neither name nor number", step.name));
  }
  const std::optional<std::size_t> number = numberOf(step.key);
  const bool isNext = number && *number == known.size() + 1;
  const bool canBeNamed = !number && !master.getIdentifyingTags().empty();
  if (isLast && (isNext || canBeNamed)) {
    return;
  }
  if (number) {
    throw EditFault(fmt::format("there is no {}[{}]: the file has {} of them", step.name, step.key,
                                known.size()));
  }
  if (master.getIdentifyingTags().empty()) {
    throw EditFault(fmt::format("a block '{}' has no name; give its number, such as {}[1]",
                                step.name, step.name));
  }
  throw EditFault(fmt::format("there is no {}[{}]{}", step.name, step.key,
                              known.empty() ? "" : fmt::format("; there are:{}", listed(known))));
}

/// Writes blocks and a tag that are not there yet.
class FreshLines {
 public:
  FreshLines(std::string_view lineEnd, std::string indent)
      : lineEnd_(lineEnd), indent_(std::move(indent)) {}

  void tag(std::string_view name, std::string_view value) {
    lines_ += fmt::format("{}{} = {}{}", indent_, name, value, lineEnd_);
  }
  void open(std::string_view name, std::string_view step) {
    lines_ += fmt::format("{}{} {{{}", indent_, name, lineEnd_);
    indent_ += step;
  }
  void close(std::string_view step) {
    indent_.resize(indent_.size() - step.size());
    lines_ += fmt::format("{}}}{}", indent_, lineEnd_);
  }
  [[nodiscard]] std::string take() { return std::move(lines_); }

 private:
  std::string_view lineEnd_;
  std::string indent_;
  std::string lines_;
};

/// Writes the tag of a fresh block, and the name that the block is asked for by.
void writeTags(const InputBlock& master, const PathStep* block, std::string_view tag,
               std::string_view value, FreshLines& out) {
  const bool isNamed = block != nullptr && !numberOf(block->key);
  const std::string_view key = isNamed ? std::string_view(block->key) : std::string_view();
  const std::string_view name = key.empty() ? "" : master.getIdentifyingTags().front();
  if (key.empty() || name == tag) {
    out.tag(tag, value);
    return;
  }
  const bool isNameFirst = master.getLogicalTagPosition(name) < master.getLogicalTagPosition(tag);
  out.tag(isNameFirst ? name : tag, isNameFirst ? key : value);
  out.tag(isNameFirst ? tag : name, isNameFirst ? value : key);
}

}  // namespace

void TreeEditor::set(std::string_view pathText, std::string_view value) {
  const Path path(pathText);
  if (!isWritableValue(value)) {
    throw EditFault(fmt::format(
        "'{}' {}", path.shown(),
        value.empty() ? "is given no value"
                      : "cannot have this value: a value must be one line, with all parentheses "
                        "closed and without comments"));
  }
  const Target target = targetOf(path);
  const NodeId tag = target.missing == 0 ? tagAt(target.block, path) : noNode;
  if (tag == noNode) {
    insert(target, path, value);
    return;
  }
  const Reading& reading = *reading_;
  const Span old = reading.tree.valueOf(reading.tree[tag]);
  const std::size_t behindMark = reading.tree[tag].mark + std::size_t{1};
  add(old.empty() ? Edit{{behindMark, behindMark}, " " + std::string(value)}
                  : Edit{old, std::string(value)});
  const auto& identifying = reading.masterOf(target.block)->getIdentifyingTags();
  if (std::find(identifying.begin(), identifying.end(), path.steps.back().name) !=
      identifying.end()) {
    settle();
  }
}

/// The tag of `block` that the path ends in; `noNode` when it is to be added.
NodeId TreeEditor::tagAt(NodeId block, const Path& path) const {
  const PathStep& tag = path.steps.back();
  const std::vector<NodeId> like = reading_->childrenCalled(block, tag.name, NodeKind::tag);
  const std::optional<std::size_t> number = numberOf(tag.key);
  if (tag.key.empty() ? like.size() > 1 : !number || *number > like.size() + 1) {
    throw EditFault(fmt::format("there are {} tags '{}'; say which, such as {}[1]", like.size(),
                                path.shown(), tag.name));
  }
  const std::size_t place = number.value_or(1) - 1;
  return place < like.size() ? like[place] : noNode;
}

/// Adds a tag, and the blocks that are missing around it.
void TreeEditor::insert(const Target& target, const Path& path, std::string_view value) {
  const Reading& reading = *reading_;
  FreshLines lines(reading.lineEnd(), reading.indentWithin(target.block));
  const InputBlock* master = reading.masterOf(target.block);
  const std::size_t blocks = path.steps.size() - 1;
  const std::size_t first = blocks - target.missing;
  std::string shown = reading.pathOf(target.block);
  for (std::size_t i = first; i < blocks; ++i) {
    const PathStep& step = path.steps[i];
    master = childOf(*master, step.name);
    if (!step.key.empty()) {
      const auto like = i == first
                            ? reading.childrenCalled(target.block, step.name, NodeKind::block)
                            : std::vector<NodeId>();
      requireFreeKey(step, *master, reading.pathsOf(like), i + 1 == blocks);
    }
    lines.open(step.name, Reading::indentStep);
    shown += (shown.empty() ? "" : "/") + stepText(step.name, step.key);
    added_.push_back(shown);
  }
  writeTags(*master, target.missing == 0 ? nullptr : &path.steps[blocks - 1],
            path.steps.back().name, value, lines);
  for (std::size_t i = first; i < blocks; ++i) {
    lines.close(Reading::indentStep);
  }
  const auto rank =
      Reading::rankOf(*reading.masterOf(target.block), path.steps[first].name, target.missing > 0);
  add(reading.insertion(target.block, rank, lines.take()));
  // What comes next may mean what was added.
  settle();
}

void TreeEditor::remove(const std::vector<std::string>& paths) {
  settle();
  const Reading& reading = *reading_;
  std::vector<Edit> edits;
  for (const std::string& text : paths) {
    const Path path(text);
    const std::vector<NodeId> found = reading.ending(path, path.steps.size(), std::nullopt);
    if (found.size() > 1) {
      throw EditFault(fmt::format("'{}' may be one of several; name more of its path:{}", text,
                                  listed(reading.pathsOf(found))));
    }
    if (found.empty()) {
      std::set<std::string_view> names;
      for (NodeId id = 1; id < reading.tree.nodes().size(); ++id) {
        names.insert(reading.nameOf(id));
      }
      const std::string_view asked = path.steps.back().name;
      throw EditFault(fmt::format(
          "the file has no '{}'{}", text,
          names.contains(asked) ? ""
                                : didYouMean(nearestName(asked, {names.begin(), names.end()}))));
    }
    edits.push_back(reading.removal(found.front()));
  }
  // What stands in a block goes with it, and what is named twice goes once.
  std::sort(edits.begin(), edits.end(), [](const Edit& one, const Edit& other) {
    return std::pair(one.at.begin, other.at.end) < std::pair(other.at.begin, one.at.end);
  });
  for (Edit& edit : edits) {
    if (pending_.empty() || pending_.back().at.end <= edit.at.begin) {
      pending_.push_back(std::move(edit));
    }
  }
  settle();
}

void TreeEditor::add(Edit edit) {
  // A second value for the same tag counts.
  std::erase_if(pending_, [&edit](const Edit& other) { return other.at == edit.at; });
  pending_.push_back(std::move(edit));
}

void TreeEditor::settle() {
  if (!pending_.empty()) {
    reading_ = std::make_shared<const Reading>(
        edited(reading_->text(), std::exchange(pending_, {})), *root_);
  }
}

std::string TreeEditor::text() const {
  return edited(reading_->text(), pending_);
}

}  // namespace KESTparse
