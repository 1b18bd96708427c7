#include "language-server/Structure.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "KESTparse/framework/InputTag.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace kcf::server {

using KESTparse::InputTag;
using KESTparse::NodeId;
using KESTparse::NodeKind;
using KESTparse::noNode;
using KESTparse::Span;
using KESTparse::SyntaxNode;
using KESTparse::SyntaxTree;
using KESTparse::ValueKind;

namespace {

/// The kinds of symbols, by the numbers of the protocol.
constexpr int symbolOfBlock = 3;
constexpr int symbolOfTag = 7;

/// What tells a block from its like: the value of the first tag that gives it a name.
std::string titleOf(Snapshot& file, NodeId block) {
  constexpr std::array titles{"name", "region_name", "string_name", "string", "type"};
  std::string best;
  std::size_t rank = titles.size();
  for (NodeId id = file.tree()[block].firstChild; id != noNode; id = file.tree()[id].next) {
    const auto* const found = std::find(titles.begin(), titles.end(), file.nameOf(id));
    const auto place = static_cast<std::size_t>(found - titles.begin());
    if (file.tree()[id].kind == NodeKind::tag && place < rank) {
      rank = place;
      best = file.valueOf(id);
    }
  }
  return best;
}

std::string shortened(std::string_view value) {
  constexpr std::size_t longest = 40;
  std::string text(value.substr(0, std::min(value.find_first_of("\r\n"), longest)));
  return text.size() < value.size() ? text + " ..." : text;
}

bool isShown(const SyntaxTree& tree, NodeId id, bool showsTags) {
  return tree[id].kind == NodeKind::block || (showsTags && tree[id].kind == NodeKind::tag);
}

json nestedSymbol(Snapshot& file, NodeId id, bool showsTags) {
  const SyntaxTree& tree = file.tree();
  const bool isBlock = tree[id].kind == NodeKind::block;
  json symbol{{"name", file.nameOf(id).empty() ? "?" : std::string(file.nameOf(id))},
              {"detail", isBlock ? titleOf(file, id) : shortened(file.valueOf(id))},
              {"kind", isBlock ? symbolOfBlock : symbolOfTag},
              {"range", file.rangeOf(tree[id].whole())},
              {"selectionRange", file.rangeOf(tree[id].name())}};
  json children = json::array();
  for (NodeId child = tree[id].firstChild; child != noNode; child = tree[child].next) {
    if (isShown(tree, child, showsTags)) {
      children.push_back(nestedSymbol(file, child, showsTags));
    }
  }
  if (!children.empty()) {
    symbol["children"] = std::move(children);
  }
  return symbol;
}

json fold(std::size_t from, std::size_t to, const char* kind) {
  json range{{"startLine", from}, {"endLine", to}};
  if (kind != nullptr) {
    range["kind"] = kind;
  }
  return range;
}

/// Tokens of the protocol: each is told by its distance from the one before.
class TokenList {
 public:
  enum Type : std::uint8_t { block, tag, choice, number, text, comment, name };

  explicit TokenList(Snapshot& file) : file_(&file) {}

  /// A token that ends with its line.
  void add(Span at, Type type) {
    const json begin = file_->positionOf(at.begin);
    const json end = file_->positionOf(at.end);
    const auto line = begin.at("line").get<std::size_t>();
    const auto character = begin.at("character").get<std::size_t>();
    data_.push_back(line - line_);
    data_.push_back(line == line_ ? character - character_ : character);
    data_.push_back(end.at("character").get<std::size_t>() - character);
    data_.push_back(static_cast<std::size_t>(type));
    data_.push_back(0);
    line_ = line;
    character_ = character;
  }

  /// What stands in `at`, line by line.
  void addLines(Span at, Type type) {
    const std::string_view whole = file_->tree().text();
    while (at.begin < at.end) {
      const std::size_t end = std::min(whole.find_first_of("\r\n", at.begin), at.end);
      if (end > at.begin) {
        add({at.begin, end}, type);
      }
      at.begin = std::min(whole.find_first_not_of(" \t\r\n", end), at.end);
    }
  }

  json take() { return std::move(data_); }

 private:
  Snapshot* file_;
  json data_ = json::array();
  std::size_t line_ = 0;
  std::size_t character_ = 0;
};

TokenList::Type typeOfValue(Snapshot& file, NodeId id) {
  const InputTag* const tag = file.prototypeOf(id);
  if (tag == nullptr) {
    return TokenList::text;
  }
  if (tag->isRestricted()) {
    return TokenList::choice;
  }
  if (file.session().namings.find(*tag) != nullptr) {
    return TokenList::name;
  }
  switch (KESTparse::traitsOf(*tag).kind) {
    case ValueKind::integer:
    case ValueKind::real:
    case ValueKind::integers:
    case ValueKind::reals:
      return TokenList::number;
    case ValueKind::words:
    case ValueKind::outputValues:
      return TokenList::choice;
    default:
      return TokenList::text;
  }
}

/// The first node that does not end before `at`.
NodeId firstNode(const SyntaxTree& tree, std::size_t at) {
  const auto& nodes = tree.nodes();
  const auto found = std::lower_bound(
      nodes.begin() + 1, nodes.end(), at,
      [](const SyntaxNode& node, std::size_t place) { return node.begin < place; });
  // The tag in front may reach into the range.
  return std::max<NodeId>(1, static_cast<NodeId>(found - nodes.begin()) - 1);
}

}  // namespace

bool isFileTag(const InputTag& tag) {
  const ValueKind kind = KESTparse::traitsOf(tag).kind;
  return kind == ValueKind::file || kind == ValueKind::seriesFile;
}

json documentSymbols(Snapshot& file) {
  const SyntaxTree& tree = file.tree();
  const bool showsTags = file.size() < largeText;
  json symbols = json::array();
  if (!file.session().takesNestedSymbols) {
    for (NodeId id = 1; id < tree.nodes().size(); ++id) {
      if (isShown(tree, id, showsTags)) {
        symbols.push_back({{"name", file.nameOf(id)},
                           {"kind", tree[id].kind == NodeKind::block ? symbolOfBlock : symbolOfTag},
                           {"location", file.locationOf(tree[id].whole())},
                           {"containerName", file.nameOf(tree[id].parent)}});
      }
    }
    return symbols;
  }
  for (NodeId id = tree[0].firstChild; id != noNode; id = tree[id].next) {
    if (isShown(tree, id, showsTags)) {
      symbols.push_back(nestedSymbol(file, id, showsTags));
    }
  }
  return symbols;
}

json foldingRanges(Snapshot& file) {
  const SyntaxTree& tree = file.tree();
  json ranges = json::array();
  const auto lineOf = [&file](std::size_t at) {
    return file.positionOf(at).at("line").get<std::size_t>();
  };
  for (NodeId id = 1; id < tree.nodes().size(); ++id) {
    const SyntaxNode& node = tree[id];
    const std::size_t first = lineOf(node.begin);
    std::size_t last = lineOf(node.end);
    if (node.kind == NodeKind::block && node.isClosed && last > first) {
      --last;  // the closing brace stays in sight
    }
    if (last > first && node.kind != NodeKind::stray) {
      ranges.push_back(fold(first, last, nullptr));
    }
  }
  const auto& comments = tree.comments();
  for (std::size_t i = 0; i < comments.size();) {
    const std::size_t first = lineOf(comments[i].begin);
    std::size_t last = lineOf(comments[i].end);
    // Comments on lines that follow each other are one.
    for (++i; i < comments.size() && lineOf(comments[i].begin) == last + 1 &&
              tree.blanked()
                      .substr(comments[i - 1].end, comments[i].begin - comments[i - 1].end)
                      .find_first_not_of(" \t\n") == std::string_view::npos;
         ++i) {
      last = lineOf(comments[i].end);
    }
    if (last > first) {
      ranges.push_back(fold(first, last, "comment"));
    }
  }
  return ranges;
}

json selectionRanges(Snapshot& file, const json& positions) {
  const SyntaxTree& tree = file.tree();
  json ranges = json::array();
  for (const json& position : positions) {
    const std::size_t offset = file.offsetOf(position);
    std::vector<Span> spans{{0, tree.text().size()}};
    std::vector<NodeId> nodes;
    for (NodeId id = file.nodeAround(offset); id != noNode; id = tree[id].parent) {
      nodes.push_back(id);
    }
    for (; !nodes.empty(); nodes.pop_back()) {
      const SyntaxNode& node = tree[nodes.back()];
      spans.push_back(node.whole());
      const Span value = node.kind == NodeKind::tag ? tree.valueOf(node) : Span{};
      for (const Span& part : {node.name(), value}) {
        if (part.begin <= offset && offset <= part.end && !part.empty()) {
          spans.push_back(part);
        }
      }
    }
    json range;
    for (const Span& span : spans) {
      json inner{{"range", file.rangeOf(span)}};
      if (!range.is_null()) {
        inner["parent"] = std::move(range);
      }
      range = std::move(inner);
    }
    ranges.push_back(std::move(range));
  }
  return ranges;
}

json documentLinks(Snapshot& file) {
  json links = json::array();
  for (NodeId id = 1; id < file.tree().nodes().size(); ++id) {
    if (file.tree()[id].kind != NodeKind::tag) {
      continue;
    }
    const std::string path = file.fileOf(id);
    std::error_code none;
    if (!path.empty() && std::filesystem::is_regular_file(path, none)) {
      links.push_back({{"range", file.rangeOf(file.tree().valueOf(file.tree()[id]))},
                       {"target", uriOfPath(std::filesystem::absolute(path).string())}});
    }
  }
  return links;
}

json inlayHints(Snapshot& file, Span range) {
  const SyntaxTree& tree = file.tree();
  json hints = json::array();
  for (NodeId id = firstNode(tree, range.begin);
       id < tree.nodes().size() && tree[id].begin < range.end; ++id) {
    const InputTag* const tag = tree[id].kind == NodeKind::tag ? file.prototypeOf(id) : nullptr;
    std::string unit = tag == nullptr ? std::string() : tag->getUnit();
    constexpr std::size_t longest = 20;
    const Span value = tag == nullptr ? Span{} : tree.valueOf(tree[id]);
    if (unit.empty() || unit == "[-]" || value.empty() || unit.size() > longest) {
      continue;
    }
    if (unit.starts_with('[') && unit.ends_with(']')) {
      unit = unit.substr(1, unit.size() - 2);
    }
    hints.push_back(
        {{"position", file.positionOf(value.end)}, {"label", unit}, {"paddingLeft", true}});
  }
  return hints;
}

json tokenTypes() {
  return {"class", "property", "enumMember", "number", "string", "comment", "variable"};
}

json semanticTokens(Snapshot& file, Span range) {
  const SyntaxTree& tree = file.tree();
  std::vector<std::pair<Span, TokenList::Type>> tokens;
  const auto& comments = tree.comments();
  auto comment =
      std::lower_bound(comments.begin(), comments.end(), range.begin,
                       [](const Span& span, std::size_t place) { return span.end < place; });
  for (; comment != comments.end() && comment->begin < range.end; ++comment) {
    tokens.emplace_back(*comment, TokenList::comment);
  }
  for (NodeId id = firstNode(tree, range.begin);
       id < tree.nodes().size() && tree[id].begin < range.end; ++id) {
    const SyntaxNode& node = tree[id];
    if (node.kind == NodeKind::block) {
      tokens.emplace_back(node.name(), TokenList::block);
    } else if (node.kind == NodeKind::tag) {
      tokens.emplace_back(node.name(), TokenList::tag);
      const Span value = tree.valueOf(node);
      const auto inside =
          std::lower_bound(comments.begin(), comments.end(), value.begin,
                           [](const Span& span, std::size_t place) { return span.end <= place; });
      // Tokens must not cover each other.
      if (inside == comments.end() || inside->begin >= value.end) {
        tokens.emplace_back(value, typeOfValue(file, id));
      }
    }
  }
  std::sort(tokens.begin(), tokens.end(),
            [](const auto& a, const auto& b) { return a.first.begin < b.first.begin; });
  TokenList list(file);
  for (const auto& [at, type] : tokens) {
    list.addLines(at, type);
  }
  return {{"data", list.take()}};
}

}  // namespace kcf::server
