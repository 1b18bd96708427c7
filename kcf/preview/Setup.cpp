#include "preview/Setup.h"

#include <algorithm>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace kcf {
namespace {

using KESTparse::NodeId;
using KESTparse::NodeKind;
using KESTparse::SyntaxNode;

std::string_view textAt(const KESTparse::SyntaxTree& text, KESTparse::Span at) {
  return text.blanked().substr(at.begin, at.end - at.begin);
}

/// Adds what stands in the node `id` to `block`.
void read(const KESTparse::SyntaxTree& text, const KESTparse::LineTable& lines, NodeId id,
          SetupBlock& block) {
  for (NodeId child = text[id].firstChild; child != KESTparse::noNode; child = text[child].next) {
    const SyntaxNode& node = text[child];
    const std::string name(textAt(text, node.name()));
    const std::size_t line = lines.at(node.begin).line;
    if (node.kind == NodeKind::block) {
      const int position =
          block.schema == nullptr ? -1 : block.schema->getLogicalBlockPosition(name);
      block.blocks.push_back(
          {name,
           line,
           lines.at(node.end).line,
           position < 0 ? nullptr
                        : &block.schema->getLogicalBlock(static_cast<std::size_t>(position)),
           &block,
           {},
           {}});
      // Only what the schema knows is shown, and text may be nested deeper than the stack is.
      if (position >= 0) {
        read(text, lines, child, block.blocks.back());
      }
    } else if (node.kind == NodeKind::tag && node.mark != SyntaxNode::nowhere) {
      const int position = block.schema == nullptr ? -1 : block.schema->getLogicalTagPosition(name);
      block.tags.push_back(
          {name, std::string(KESTparse::trim(textAt(text, text.valueOf(node)))), line,
           position < 0 ? nullptr
                        : &block.schema->getLogicalTag(static_cast<std::size_t>(position))});
    }
  }
}

/// Whether the conditions around a tag let it be used in `block`.
bool isUsed(const KESTparse::InputTag& tag, const SetupBlock& block) {
  const auto rules = KESTparse::traitsOf(tag).rules;
  return std::all_of(rules.begin(), rules.end(), [&block](const KESTparse::TagRule& rule) {
    return rule.kind != KESTparse::TagRule::Kind::usedIf ||
           rule.condition->isMet(block.value(rule.other));
  });
}

}  // namespace

std::vector<std::string> listItems(std::string_view text) {
  return KESTparse::split(" \t\n\r(),", text);
}

const SetupBlock* SetupBlock::find(std::string_view path) const {
  const std::size_t slash = path.find('/');
  for (const SetupBlock& block : blocks) {
    if (block.name == path.substr(0, slash)) {
      return slash == std::string_view::npos ? &block : block.find(path.substr(slash + 1));
    }
  }
  return nullptr;
}

std::vector<const SetupBlock*> SetupBlock::all(std::string_view blockName) const {
  std::vector<const SetupBlock*> found;
  for (const SetupBlock& block : blocks) {
    if (block.name == blockName) {
      found.push_back(&block);
    }
  }
  return found;
}

const SetupTag* SetupBlock::tag(std::string_view tagName) const {
  const auto it = std::find_if(tags.begin(), tags.end(),
                               [tagName](const SetupTag& tag) { return tag.name == tagName; });
  return it == tags.end() ? nullptr : &*it;
}

std::string SetupBlock::value(std::string_view tagName) const {
  if (const SetupTag* const given = tag(tagName); given != nullptr) {
    return given->value;
  }
  if (schema != nullptr) {
    const int position = schema->getLogicalTagPosition(tagName);
    if (position >= 0) {
      return schema->getLogicalTag(static_cast<std::size_t>(position)).getDefaultValue();
    }
  }
  return "";
}

std::vector<std::string> SetupBlock::items(std::string_view tagName) const {
  return listItems(value(tagName));
}

std::vector<double> SetupBlock::numbers(std::string_view tagName) const {
  std::vector<double> numbers;
  for (const std::string& item : items(tagName)) {
    const auto number = KESTparse::extractDouble(item);
    if (number.ok) {
      numbers.push_back(number.value);
    }
  }
  return numbers;
}

std::vector<const KESTparse::InputTag*> SetupBlock::defaults() const {
  std::vector<const KESTparse::InputTag*> found;
  if (schema == nullptr) {
    return found;
  }
  for (const KESTparse::InputTag& prototype : schema->logicalTags()) {
    if (!prototype.getDefaultValue().empty() && tag(prototype.getName()) == nullptr &&
        isUsed(prototype, *this)) {
      found.push_back(&prototype);
    }
  }
  return found;
}

std::string SetupBlock::path() const {
  return parent == nullptr ? "" : parent->path() + "/" + name;
}

std::unique_ptr<SetupBlock> readSetup(const KESTparse::SyntaxTree& text,
                                      const KESTparse::LineTable& lines,
                                      const KESTparse::InputBlock& root) {
  auto setup = std::make_unique<SetupBlock>();
  setup->schema = &root;
  setup->lastLine = lines.count();
  read(text, lines, KESTparse::noNode, *setup);
  return setup;
}

}  // namespace kcf
