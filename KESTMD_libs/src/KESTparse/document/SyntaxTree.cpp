#include "KESTparse/document/SyntaxTree.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "KESTparse/base/PlainText.h"

namespace KESTparse {
namespace {

/// One thing that the scanner told.
struct Item {
  enum class Kind : std::uint8_t { open, close, tag, stray };
  Kind kind;
  bool isSwallowed = false;  // a closing brace that belongs to the opening one in front of it
  bool isFirst = false;      // nothing but white space stands before it on its line
  Span name;
  std::uint32_t mark = SyntaxNode::nowhere;
  std::uint32_t end = 0;
  std::uint32_t column = SyntaxNode::nowhere;  // of the first thing on a line
};

struct ItemFault {
  std::size_t item;
  TreeFault kind;
  Span at;
};

/// What the scanner tells, one thing behind the other.
class Items {
 public:
  static constexpr bool goesOn = true;

  explicit Items(std::string_view text) : text_(text) { Scanner(text, *this).run(); }

  void open(Span name, std::size_t brace) {
    Item item{.kind = Item::Kind::open, .name = name};
    item.mark = static_cast<std::uint32_t>(brace);
    item.end = item.mark + 1;
    add(item);
    if (brace + 1 < text_.size() && !isWhiteSpace(text_[brace + 1])) {
      faults.push_back({items.size() - 1, TreeFault::swallowedByte, {brace + 1, brace + 2}});
      if (text_[brace + 1] == '}') {
        close(brace + 1);
        items.back().isSwallowed = true;
      }
    }
  }

  void close(std::size_t brace) {
    Item item{.kind = Item::Kind::close, .name = {brace, brace + 1}};
    item.mark = static_cast<std::uint32_t>(brace);
    item.end = item.mark + 1;
    add(item);
  }

  void tag(Span name, std::size_t equals, Span value) {
    Item item{.kind = Item::Kind::tag, .name = name};
    item.mark = static_cast<std::uint32_t>(equals);
    item.end = static_cast<std::uint32_t>(value.end);
    add(item);
  }

  bool fault(const SyntaxFault& fault) {
    switch (fault.kind) {
      case ParseErrorKind::emptyBlockName:
      case ParseErrorKind::emptyTagName:
        faults.push_back({items.size(), TreeFault::missingName, {fault.at, fault.at + 1}});
        break;
      case ParseErrorKind::misplacedBrace:
        addStray(fault.name, TreeFault::strayText);
        break;
      case ParseErrorKind::tagValue:
        faults.push_back({items.size(), TreeFault::unopenedParenthesis, {fault.at, fault.at + 1}});
        break;
      case ParseErrorKind::endOfFile:
        faults.push_back({items.size(), TreeFault::unclosedList, {fault.at, fault.at}});
        break;
      default:
        addFaultOfName(fault);
    }
    return true;
  }

  void end(const Ending& ending) {
    switch (ending.behind) {
      case Ending::Behind::name:
        if (!ending.name.empty()) {
          addStray(ending.name, TreeFault::strayText);
        }
        break;
      case Ending::Behind::openingBrace:
        faults.push_back({items.size() - 1, TreeFault::unfinished, ending.name});
        break;
      case Ending::Behind::equals:
        tag(ending.name, ending.at, {ending.at + 1, text_.size()});
        faults.push_back({items.size() - 1, TreeFault::unfinished, ending.name});
        break;
      case Ending::Behind::closingBrace:
        break;
    }
  }

  std::vector<Item> items;
  std::vector<ItemFault> faults;

 private:
  void add(Item item) {
    const std::size_t begin = item.name.begin;
    std::size_t lineBegin = begin;
    while (lineBegin > 0 && (text_[lineBegin - 1] == ' ' || text_[lineBegin - 1] == '\t')) {
      --lineBegin;
    }
    item.isFirst = lineBegin == 0 || text_[lineBegin - 1] == '\n';
    if (item.isFirst) {
      item.column = static_cast<std::uint32_t>(begin - lineBegin);
    }
    items.push_back(item);
  }

  void addStray(Span text, TreeFault kind) {
    faults.push_back({items.size(), kind, text});
    Item item{.kind = Item::Kind::stray, .name = text};
    item.end = static_cast<std::uint32_t>(text.end);
    add(item);
  }

  /// A name that is none: a stray line, or the name of a block or tag that follows on the line.
  void addFaultOfName(const SyntaxFault& fault) {
    const Span between{fault.name.end, fault.at};
    if (!fault.name.empty() && between.in(text_).find('\n') != std::string_view::npos) {
      addStray(fault.name, TreeFault::strayText);
      return;
    }
    const std::size_t begin = fault.name.empty() ? fault.at : fault.name.begin;
    std::size_t end = std::min(text_.find_first_of("\n{}=", fault.at), text_.size());
    const bool names = end < text_.size() && (text_[end] == '{' || text_[end] == '=');
    while (end > begin && isWhiteSpace(text_[end - 1])) {
      --end;
    }
    if (names) {
      faults.push_back({items.size(), TreeFault::invalidName, {begin, end}});
    } else {
      addStray({begin, end}, fault.kind == ParseErrorKind::whiteSpaceInName
                                 ? TreeFault::missingEquals
                                 : TreeFault::strayText);
    }
  }

  std::string_view text_;
};

/// The name in an item that is no block but reads like the header of one: a name alone, with
/// another sign in place of the brace, or with an equals sign in front of it. Empty otherwise.
Span headerIn(const Item& item, std::string_view text) {
  if (item.kind == Item::Kind::tag) {
    std::string_view value = Span{item.mark + 1U, item.end}.in(text);
    value.remove_prefix(std::min(value.find_first_not_of(" \t"), value.size()));
    const bool isBrace =
        value.starts_with('{') && value.find_first_not_of(" \t\n", 1) == std::string_view::npos;
    return isBrace ? item.name : Span{};
  }
  std::string_view name = item.name.in(text);
  while (!name.empty() && std::string_view(" \t([<:").find(name.back()) != std::string_view::npos) {
    name.remove_suffix(1);
  }
  return item.kind == Item::Kind::stray && isWritableName(name)
             ? Span{item.name.begin, item.name.begin + name.size()}
             : Span{};
}

/// How the braces of a text belong together.
struct Pairing {
  std::vector<std::uint32_t> unclosedBefore;  ///< for each item the blocks that end before it
  std::vector<char> isDropped;                ///< for each item whether it closes nothing
  bool readsSwallowed = true;                 ///< whether swallowed braces close their blocks
  std::vector<char> isOpened;                 ///< for each item without brace whether it opens one
  std::size_t repairs = 0;                    ///< braces that are missing or close nothing
  std::size_t slants = 0;                     ///< pairs whose lines differ in indentation
};

/// What a way of pairing braces goes by.
enum class By { bracesAlone, indentation, schema };

class Pairer {
 public:
  Pairer(const std::vector<Item>& items, std::string_view text, const BlockOracle& mayStand)
      : items_(&items), text_(text), mayStand_(&mayStand) {}

  // NOLINTNEXTLINE(readability-function-cognitive-complexity): one case for each kind of item.
  [[nodiscard]] Pairing pair(By by, bool readsSwallowed = true) {
    Pairing result;
    result.readsSwallowed = readsSwallowed;
    result.unclosedBefore.assign(items_->size() + 1, 0);
    result.isDropped.assign(items_->size(), 0);
    result.isOpened.assign(items_->size(), 0);
    open_.clear();
    names_.clear();
    columns_.clear();
    for (std::size_t i = 0; i < items_->size(); ++i) {
      const Item& item = (*items_)[i];
      if (item.isSwallowed && !readsSwallowed) {
        continue;
      }
      const std::size_t popped = by == By::bracesAlone   ? 0
                                 : by == By::indentation ? endedByIndentation(item)
                                                         : endedBySchema(item);
      result.unclosedBefore[i] = static_cast<std::uint32_t>(popped);
      result.repairs += popped;
      pop(popped);
      if (item.kind == Item::Kind::open || (by != By::bracesAlone && lacksBrace(i))) {
        const bool lacksOne = item.kind != Item::Kind::open;
        if (lacksOne) {
          result.isOpened[i] = 1;
          ++result.repairs;
        }
        open_.push_back(i);
        ++columns_[item.column];
        names_.push_back((lacksOne ? headerIn(item, text_) : item.name).in(text_));
      } else if (item.kind == Item::Kind::close) {
        if (open_.empty() || (by == By::indentation && closesNothing(item))) {
          result.isDropped[i] = 1;
          ++result.repairs;
        } else {
          const Item& opening = header(open_.size() - 1);
          const bool slants = opening.isFirst && item.isFirst && opening.column != item.column;
          result.slants += slants ? 1 : 0;
          pop(1);
        }
      }
    }
    result.unclosedBefore.back() = static_cast<std::uint32_t>(open_.size());
    result.repairs += open_.size();
    return result;
  }

 private:
  void pop(std::size_t count) {
    for (; count > 0; --count) {
      --columns_[header(open_.size() - 1).column];
      open_.pop_back();
      names_.pop_back();
    }
  }

  [[nodiscard]] const Item& header(std::size_t place) const { return (*items_)[open_[place]]; }

  /// How many of the open blocks must have ended before `item`, as its indentation shows.
  [[nodiscard]] std::size_t endedByIndentation(const Item& item) const {
    if (!item.isFirst) {
      return 0;
    }
    std::size_t remaining = open_.size();
    if (item.kind == Item::Kind::close) {
      const auto known = columns_.find(item.column);
      if (known == columns_.end() || known->second == 0) {
        return 0;
      }
      while (remaining > 0 && header(remaining - 1).column != item.column) {
        --remaining;
      }
      return open_.size() - remaining;
    }
    while (remaining > 0 && header(remaining - 1).isFirst &&
           header(remaining - 1).column >= item.column) {
      --remaining;
    }
    return open_.size() - remaining;
  }

  /// Whether a closing brace stands deeper than all blocks that it could close.
  [[nodiscard]] bool closesNothing(const Item& item) const {
    return item.isFirst && header(open_.size() - 1).isFirst &&
           header(open_.size() - 1).column != item.column;
  }

  /// How many of the open blocks must have ended before the block `item`, as the schema shows.
  [[nodiscard]] std::size_t endedBySchema(const Item& item) const {
    // No schema is as deep; a hostile file may be.
    constexpr std::size_t deepest = 32;
    if (item.kind != Item::Kind::open || names_.size() > deepest) {
      return 0;
    }
    std::vector<std::string_view> open = names_;
    for (std::size_t ended = 0; ended <= open_.size(); ++ended) {
      if ((*mayStand_)(open, item.name.in(text_))) {
        return ended;
      }
      if (!open.empty()) {
        open.pop_back();
      }
    }
    return 0;
  }

  /// Whether the item at `i` is the header of a block whose brace is missing: deeper lines stand
  /// below it.
  [[nodiscard]] bool lacksBrace(std::size_t i) const {
    const Item& item = (*items_)[i];
    return item.isFirst && !headerIn(item, text_).empty() && i + 1 < items_->size() &&
           (*items_)[i + 1].isFirst && (*items_)[i + 1].column > item.column &&
           (*items_)[i + 1].kind != Item::Kind::close;
  }

  const std::vector<Item>* items_;
  std::string_view text_;
  const BlockOracle* mayStand_;
  std::vector<std::size_t> open_;
  std::vector<std::string_view> names_;
  std::unordered_map<std::uint32_t, std::size_t> columns_;  // of the headers of the open blocks
};

/// The way of pairing that needs the fewest repairs and leaves the fewest pairs slanted; braces
/// alone where they are whole.
Pairing bestPairing(const std::vector<Item>& items, std::string_view text,
                    const BlockOracle& mayStand) {
  Pairer pairer(items, text, mayStand);
  // As the converter reads it, braces that are swallowed left out.
  Pairing best = pairer.pair(By::bracesAlone, false);
  if (best.repairs == 0) {
    return best;
  }
  best = pairer.pair(By::bracesAlone);
  if (best.repairs == 0) {
    return best;
  }
  // A missing opening brace shows as a stray closing one.
  for (const By by : {By::schema, By::indentation}) {
    if (by == By::schema && !mayStand) {
      continue;
    }
    Pairing other = pairer.pair(by);
    if (other.repairs + other.slants <= best.repairs + best.slants) {
      best = std::move(other);
    }
  }
  return best;
}

}  // namespace

// NOLINTNEXTLINE(readability-function-cognitive-complexity): one case for each kind of item.
SyntaxTree::SyntaxTree(std::string text, const BlockOracle& mayStand) : text_(std::move(text)) {
  if (text_.size() >= SyntaxNode::nowhere) {
    throw std::length_error("a command file must be smaller than 4 GB");
  }
  blanked_.assign(text_.begin(), text_.end());
  if (text_.starts_with(utf8Mark)) {
    std::fill_n(blanked_.begin(), utf8Mark.size(), ' ');
    faults_.push_back({TreeFault::byteOrderMark, noNode, {0, utf8Mark.size()}});
  }
  blankComments(blanked_, &comments_);
  Items scanned(blanked());
  const Pairing pairing = bestPairing(scanned.items, blanked(), mayStand);
  nodes_.reserve(scanned.items.size() + 1);
  nodes_.push_back({.kind = NodeKind::file, .end = static_cast<std::uint32_t>(text_.size())});
  std::vector<NodeId> open{0};
  std::vector<NodeId> last{noNode};  // the last child of each open node
  std::vector<NodeId> nodeOf(scanned.items.size() + 1, noNode);
  const auto endUnclosed = [&](std::size_t count, std::uint32_t behind) {
    for (; count > 0; --count) {
      SyntaxNode& block = nodes_[open.back()];
      block.end = behind;
      faults_.push_back({TreeFault::missingClosingBrace, open.back(), block.name()});
      open.pop_back();
      last.pop_back();
    }
  };
  std::uint32_t behind = 0;
  for (std::size_t i = 0; i < scanned.items.size(); ++i) {
    const Item& item = scanned.items[i];
    if (item.isSwallowed && !pairing.readsSwallowed) {
      continue;
    }
    endUnclosed(pairing.unclosedBefore[i], behind);
    behind = item.end;
    if (item.kind == Item::Kind::close && pairing.isDropped[i] == 0) {
      SyntaxNode& block = nodes_[open.back()];
      block.end = item.end;
      block.isClosed = true;
      nodeOf[i] = open.back();
      open.pop_back();
      last.pop_back();
      continue;
    }
    const auto id = static_cast<NodeId>(nodes_.size());
    const bool isOpened = pairing.isOpened[i] != 0;
    const bool opens = item.kind == Item::Kind::open || isOpened;
    const Span name = isOpened ? headerIn(item, blanked()) : item.name;
    std::uint32_t mark = item.kind == Item::Kind::close ? SyntaxNode::nowhere : item.mark;
    if (isOpened && item.kind == Item::Kind::tag) {
      mark = static_cast<std::uint32_t>(blanked().find('{', item.mark));
      faults_.push_back({TreeFault::missingOpeningBrace, id, {name.begin, mark + 1}});
    }
    nodeOf[i] = id;
    nodes_.push_back({.kind = opens                          ? NodeKind::block
                              : item.kind == Item::Kind::tag ? NodeKind::tag
                                                             : NodeKind::stray,
                      .parent = open.back(),
                      .begin = static_cast<std::uint32_t>(name.begin),
                      .nameEnd = static_cast<std::uint32_t>(name.end),
                      .mark = mark,
                      .end = item.end});
    (last.back() == noNode ? nodes_[open.back()].firstChild : nodes_[last.back()].next) = id;
    last.back() = id;
    if (opens) {
      open.push_back(id);
      last.push_back(noNode);
    }
    if (item.kind == Item::Kind::close) {
      faults_.push_back({TreeFault::strayClosingBrace, id, item.name});
    }
  }
  endUnclosed(pairing.unclosedBefore.back(), behind);
  for (const ItemFault& fault : scanned.faults) {
    const bool isHeader =
        fault.item < scanned.items.size() && pairing.isOpened[fault.item] != 0 &&
        (fault.kind == TreeFault::strayText || fault.kind == TreeFault::missingEquals);
    faults_.push_back(
        {isHeader ? TreeFault::missingOpeningBrace : fault.kind, nodeOf[fault.item], fault.at});
  }
  std::stable_sort(faults_.begin(), faults_.end(), [](const TreeFaultAt& a, const TreeFaultAt& b) {
    return a.at.begin < b.at.begin;
  });
}

Span SyntaxTree::valueOf(const SyntaxNode& tag) const {
  Span value = tag.value();
  const std::string_view covered = blanked();
  const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\n'; };
  while (value.begin < value.end && isBlank(covered[value.begin])) {
    ++value.begin;
  }
  while (value.end > value.begin && isBlank(covered[value.end - 1])) {
    --value.end;
  }
  return value;
}

NodeId SyntaxTree::nodeAt(std::size_t at) const {
  // Nodes stand in the order of their begins, and a node ends within its parent.
  const auto behind = std::upper_bound(
      nodes_.begin() + 1, nodes_.end(), at,
      [](std::size_t place, const SyntaxNode& node) { return place < node.begin; });
  auto found = static_cast<NodeId>(behind - nodes_.begin() - 1);
  while (found != 0 && at >= std::max(nodes_[found].end, nodes_[found].begin + 1)) {
    found = nodes_[found].parent;
  }
  return found;
}

}  // namespace KESTparse
