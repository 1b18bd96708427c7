#include "KESTparse/document/Document.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/PlainText.h"
#include "KESTparse/base/Suggestion.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/document/Explanations.h"
#include "KESTparse/document/Silence.h"
#include "KESTparse/framework/Guard.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

/// Whether a block called `name` may stand in the innermost of `open`.
bool mayStand(const InputBlock& root, const std::vector<std::string_view>& open,
              std::string_view name) {
  const InputBlock* block = &root;
  for (const std::string_view parent : open) {
    const int position = block->getLogicalBlockPosition(parent);
    if (position < 0) {
      return false;
    }
    block = &block->getLogicalBlock(static_cast<std::size_t>(position));
  }
  return block->getLogicalBlockPosition(name) >= 0;
}

constexpr std::size_t utf16MarkSize = 2;

/// Makes the names of files count from `directory`.
void setFolders(GlobalValues& values, const std::string& directory) {
  values.basePath = "./";
  values.directory = directory;
}

/// `name` as it stands in codes.
std::string codeName(std::string_view name) {
  std::string code(name);
  std::transform(code.begin(), code.end(), code.begin(), [](char c) {
    return c == '_' ? '-' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return code;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    bool isValid = true;
    text.remove_prefix(codePointLength(text, isValid));
    if (!isValid) {
      return false;
    }
  }
  return true;
}

/// A tag of the setup, whatever instance of it there is.
using TagPlace = std::pair<const InputBlock*, std::size_t>;

TagPlace placeOf(const InputTag& tag) {
  return {tag.getActualParent(), tag.getPosition()};
}

void relate(Diagnostic& told, Span at, std::string message) {
  Related& related = told.related.emplace_back();
  related.at.at = at;
  related.message = std::move(message);
}

}  // namespace

/// What ends the converter.
struct Document::ConverterStop {
  std::string text;
  std::uint32_t line = 0;  // 0 where it names none
};

/// Makes the setup of the nodes.
class Document::Builder {
 public:
  explicit Builder(Document& document) : d_(&document), text_(document.syntax_.blanked()) {}

  void run() {
    const auto& nodes = d_->syntax_.nodes();
    d_->made_.assign(nodes.size(), nullptr);
    d_->made_[0] = d_->root_.get();
    for (const TreeFaultAt& fault : d_->syntax_.faults()) {
      if (fault.kind == TreeFault::unopenedParenthesis || fault.kind == TreeFault::unclosedList ||
          fault.kind == TreeFault::unfinished) {
        hasFaultyValue_.insert(fault.node);
      }
    }
    for (NodeId id = 1; id < nodes.size(); ++id) {
      const SyntaxNode& node = nodes[id];
      auto* const parent = blockAt(node.parent);
      if (parent == nullptr) {
        continue;
      }
      if (node.kind == NodeKind::block) {
        makeBlock(id, node, *parent);
      } else if (node.kind == NodeKind::tag) {
        makeTag(id, node, *parent);
      }
    }
    // Rules take a tag that is there for one that holds a value.
    for (InputTag* const tag : toRemove_) {
      tag->getActualParent()->removeTag(*tag);
    }
    d_->root_->addStandingBlocks();
    complete(*d_->root_);
  }

 private:
  friend class Document::Checker;
  friend class Document;

  [[nodiscard]] InputBlock* blockAt(NodeId id) const {
    const bool isBlock = id == 0 || d_->syntax_[id].kind == NodeKind::block;
    return isBlock ? static_cast<InputBlock*>(const_cast<void*>(d_->made_[id])) : nullptr;
  }

  /// The name of a node, with the byte that the brace in front of it swallows.
  [[nodiscard]] std::string_view nameOf(const SyntaxNode& node) const {
    const std::uint32_t brace = d_->syntax_[node.parent].mark;
    const bool isCut = node.parent != noNode && node.begin == brace + 2 &&
                       node.nameEnd > node.begin && isNameCharacter(text_[node.begin - 1]);
    return Span{isCut ? node.begin - 1 : node.begin, node.nameEnd}.in(text_);
  }

  Diagnostic& add(std::string_view code, Span at, std::string message, std::string help) {
    diagnostics.push_back({.code = std::string(code),
                           .at = {.at = at},
                           .message = std::move(message),
                           .help = std::move(help)});
    return diagnostics.back();
  }

  /// The place where a block or tag that does not belong into `parent` may stand, in words; empty
  /// when there is none.
  [[nodiscard]] std::string belongsInto(std::string_view name, const InputBlock& parent,
                                        bool isTag) const {
    std::string here;
    for (const InputBlock* block = &parent; block->getActualParent() != nullptr;
         block = block->getActualParent()) {
      here.insert(0, fmt::format("/{}", block->getName()));
    }
    std::string best;
    std::size_t bestShared = 0;
    for (const Place& place : placesOf(*d_->schema_)) {
      const int position = isTag ? place.block->getLogicalTagPosition(name)
                                 : place.block->getLogicalBlockPosition(name);
      if (position < 0) {
        continue;
      }
      const auto differs =
          std::mismatch(here.begin(), here.end(), place.path.begin(), place.path.end());
      const auto shared = static_cast<std::size_t>(differs.first - here.begin()) + 1;
      if (shared > bestShared) {
        bestShared = shared;
        best = place.path;
      }
    }
    return best == "/" ? "the file itself" : best.substr(std::min<std::size_t>(1, best.size()));
  }

  void makeBlock(NodeId id, const SyntaxNode& node, InputBlock& parent) {
    const std::string_view written = nameOf(node);
    std::string_view name = written;
    if (parent.getLogicalBlockPosition(name) < 0) {
      name = nearestName(written, blockNamesOf(parent));
      const bool isFaulty = !isWritableName(written);
      if (!isFaulty) {
        explainUnknownBlock(node, name, parent);
      } else if (name.empty()) {
        name = nearestName(wordIn(written), blockNamesOf(parent));
      }
      if (name.empty()) {
        skip(node);
        return;
      }
    }
    // A second one is refused by the schema, or by an assertion.
    if (stopOf([&] { d_->made_[id] = &parent.getBlock(name, fileName_, 0); })) {
      if (name != written) {
        return;
      }
      Diagnostic& told = add(
          code::secondBlock, node.name(),
          fmt::format("a second block '{}' stands in '{}', which takes one", name, titleOf(parent)),
          fmt::format("write what both hold into one '{}', or remove one of them", name));
      const NodeId first = firstOf(node.parent, NodeKind::block, name, id);
      if (first != noNode) {
        relate(told, d_->syntax_[first].name(), "the first is here");
      }
      skip(node);
    }
  }

  void explainUnknownBlock(const SyntaxNode& node, std::string_view nearest,
                           const InputBlock& parent) {
    const std::string_view written = nameOf(node);
    const std::string elsewhere = belongsInto(written, parent, false);
    std::string help;
    std::vector<Fix> fixes;
    if (!elsewhere.empty()) {
      help = fmt::format("'{}' belongs into {}", written, elsewhere);
    } else if (!nearest.empty()) {
      help = fmt::format("did you mean '{}'?", nearest);
      fixes.push_back({fmt::format("write '{}'", nearest), {{node.name(), std::string(nearest)}}});
    } else {
      help = fmt::format("remove it; {}", contentOf(parent));
    }
    Diagnostic& told = add(code::unknownBlock, node.name(),
                           fmt::format("there is no block '{}' in '{}'", written, titleOf(parent)),
                           std::move(help));
    told.fixes = std::move(fixes);
  }

  void makeTag(NodeId id, const SyntaxNode& node, InputBlock& parent) {
    const std::string_view written = nameOf(node);
    std::string_view name = written;
    bool isMeant = true;
    if (parent.getLogicalTagPosition(name) < 0) {
      const std::string_view word = isWritableName(written) ? written : wordIn(written);
      name = nearestName(word, tagNamesOf(parent));
      name = name.empty() ? longerName(word, tagNamesOf(parent)) : name;
      isMeant = !name.empty() && !isGiven(node.parent, name);
      if (isWritableName(written)) {
        explainUnknownTag(node, isMeant ? name : std::string_view(), parent);
      }
      if (!isMeant) {
        skip(node);
        return;
      }
    }
    InputTag* tag = nullptr;
    if (stopOf([&] { tag = &parent.getTag(name); })) {
      explainSecondTag(id, node, parent);
      return;
    }
    d_->made_[id] = tag;
    if (hasFaultyValue_.contains(id)) {
      refuse(id, *tag);
      skip(node);
      return;
    }
    setValue(id, node, *tag, parent);
  }

  void explainSecondTag(NodeId id, const SyntaxNode& node, const InputBlock& parent) {
    const std::string_view name = nameOf(node);
    Diagnostic& told =
        add(code::secondTag, node.name(),
            fmt::format("'{}' is given a second time in '{}'", name, titleOf(parent)),
            "remove one of them: only one value can hold");
    const NodeId first = firstOf(node.parent, NodeKind::tag, name, id);
    if (first != noNode) {
      relate(told, d_->syntax_[first].name(), "the first is here");
    }
    skip(node);
  }

  void explainUnknownTag(const SyntaxNode& node, std::string_view nearest,
                         const InputBlock& parent) {
    const std::string_view written = nameOf(node);
    const std::string elsewhere = belongsInto(written, parent, true);
    std::string help;
    std::vector<Fix> fixes;
    if (!nearest.empty()) {
      help = fmt::format("did you mean '{}'?", nearest);
      if (!nearestName(written, {nearest}).empty()) {
        fixes.push_back(
            {fmt::format("write '{}'", nearest), {{node.name(), std::string(nearest)}}});
      }
    } else if (!elsewhere.empty()) {
      help = fmt::format("'{}' belongs into {}", written, elsewhere);
    } else if (parent.getLogicalBlockPosition(written) >= 0) {
      help = fmt::format("'{0}' is a block: write '{0} {{ ... }}'", written);
    } else {
      help = fmt::format("remove it; {}", contentOf(parent));
    }
    Diagnostic& told =
        add(code::unknownTag, node.name(),
            fmt::format("there is no tag '{}' in '{}'", written, titleOf(parent)), std::move(help));
    told.fixes = std::move(fixes);
  }

  void setValue(NodeId id, const SyntaxNode& node, InputTag& tag, const InputBlock& parent) {
    const Span value = d_->syntax_.valueOf(node);
    std::string refusal;
    const auto stop = stopOf([&] {
      try {
        tag.setRawValue(node.value().in(text_));
      } catch (const InputParseError& error) {
        refusal = error.message;
      }
    });
    if (!refusal.empty()) {
      refuse(id, tag);
      Diagnostic told =
          explainValue({tag, parent, d_->syntax_.text(), value, node.name(), refusal});
      if (told.code == code::strayClosingBrace) {
        closedInValues.insert(node.parent);
      }
      if (told.code == code::exclusiveTags) {
        addOtherTag(told, node, parent);
      }
      if (told.code == code::missingValue && node.next != noNode) {
        joinNextLine(told, node, d_->syntax_[node.next]);
      }
      diagnostics.push_back(std::move(told));
      skip(node);
    } else if (stop && stop->kind != Stopped::Kind::skipped) {
      unknown.insert(placeOf(tag));
      addStop(*stop, value);
    }
  }

  /// Says of a tag without a value that it stands on the next line, if it does.
  void joinNextLine(Diagnostic& told, const SyntaxNode& tag, const SyntaxNode& next) {
    const Span gap{tag.mark + 1, next.begin};
    const std::string_view between = gap.in(d_->syntax_.text());
    if (next.kind != NodeKind::stray || std::count(between.begin(), between.end(), '\n') != 1 ||
        between.find_first_not_of(" \t\r\n") != std::string_view::npos) {
      return;
    }
    const Span value = next.name();
    const std::string_view written = value.in(d_->syntax_.text());
    relate(told, value, "it stands here");
    told.message = fmt::format("the value of '{}' does not stand on its line", nameOf(tag));
    told.help = fmt::format("write '{} = {}' on one line", nameOf(tag), written);
    told.fixes = {{"write both on one line", {{gap, " "}}}};
    toldStray.insert(value.begin);
  }

  void addOtherTag(Diagnostic& told, const SyntaxNode& node, const InputBlock& parent) {
    const int position = parent.getLogicalTagPosition(nameOf(node));
    if (position < 0) {
      return;
    }
    for (const TagRule& rule :
         traitsOf(parent.getLogicalTag(static_cast<std::size_t>(position))).rules) {
      if (rule.kind == TagRule::Kind::exclusive) {
        const NodeId other = firstOf(node.parent, NodeKind::tag, rule.other, noNode);
        if (other != noNode) {
          relate(told, d_->syntax_[other].name(), "the other is here");
        }
      }
    }
  }

  /// Tells of a stop that no rule foresees.
  void addStop(const Stopped& stop, Span at) {
    const bool isSeries = stop.text.find("xpected a line with") != std::string::npos;
    if (isSeries) {
      add(code::unequalRows, at,
          fmt::format("the rows of '{}' do not all have the same number of columns", at.in(text_)),
          "give each line of the file as many numbers as the first one has");
      return;
    }
    StopWords words = explainStop(stop.text);
    add(code::stopped, at, std::move(words.message), std::move(words.help));
  }

  /// The first node among the children of `parent` before `before`, if that is one, that is called
  /// `name`.
  [[nodiscard]] NodeId firstOf(NodeId parent, NodeKind kind, std::string_view name,
                               NodeId before) const {
    for (NodeId id = d_->syntax_[parent].firstChild; id != noNode && id != before;
         id = d_->syntax_[id].next) {
      const SyntaxNode& node = d_->syntax_[id];
      if (node.kind == kind && nameOf(node) == name) {
        return id;
      }
    }
    return noNode;
  }

  /// Whether a tag below `parent` is called `name`.
  [[nodiscard]] bool isGiven(NodeId parent, std::string_view name) {
    const auto [given, isNew] = givenTags_.try_emplace(parent);
    for (NodeId id = isNew ? d_->syntax_[parent].firstChild : noNode; id != noNode;
         id = d_->syntax_[id].next) {
      if (d_->syntax_[id].kind == NodeKind::tag) {
        given->second.insert(nameOf(d_->syntax_[id]));
      }
    }
    return given->second.contains(name);
  }

  /// The longest run of name characters in a name that is none.
  [[nodiscard]] static std::string_view wordIn(std::string_view text) {
    std::string_view longest;
    for (std::size_t begin = 0; begin < text.size();) {
      std::size_t end = begin;
      while (end < text.size() && isNameCharacter(text[end])) {
        ++end;
      }
      if (end - begin > longest.size()) {
        longest = text.substr(begin, end - begin);
      }
      begin = end + 1;
    }
    return longest;
  }

  void refuse(NodeId id, InputTag& tag) {
    d_->made_[id] = nullptr;
    unknown.insert(placeOf(tag));
    toRemove_.push_back(&tag);
  }

  /// Remembers the words of what could not be read: what is missing elsewhere may stand there.
  void skip(const SyntaxNode& node) { skipped_.push_back(node.whole()); }

  [[nodiscard]] static std::string titleOf(const InputBlock& block) {
    return block.getActualParent() == nullptr ? "the file" : std::string(block.getName());
  }

  [[nodiscard]] static std::string contentOf(const InputBlock& block) {
    const std::vector<std::string_view> tags = tagNamesOf(block);
    const std::vector<std::string_view> blocks = blockNamesOf(block);
    std::string text = fmt::format("{} takes ", titleOf(block));
    if (!tags.empty()) {
      text += fmt::format("the tags {}", fmt::join(tags, ", "));
    }
    if (!blocks.empty()) {
      text += fmt::format("{}the blocks {}", tags.empty() ? "" : " and ", fmt::join(blocks, ", "));
    }
    return text;
  }

  /// Adds defaults. A default that its tag refuses stands in the way of all conversions.
  void complete(InputBlock& block) {
    for (bool goesOn = true; goesOn;) {
      const std::size_t before = block.getNumTags();
      const auto stop = stopOf([&block] { block.populateTags(); });
      goesOn = stop.has_value() && block.getNumTags() > before;
      if (stop) {
        const InputTag& tag = block.getTag(block.getNumTags() - 1);
        unknown.insert(placeOf(tag));
        badDefaults.emplace_back(&block, &tag);
      }
    }
    for (InputBlock& child : block.blocks()) {
      child.addStandingBlocks();
      complete(child);
    }
  }

  Document* d_;
  std::string_view text_;
  std::shared_ptr<const std::string> fileName_ = std::make_shared<const std::string>();
  std::unordered_set<NodeId> hasFaultyValue_;  // told as faults of syntax
  std::vector<Span> skipped_;
  std::vector<InputTag*> toRemove_;
  std::unordered_map<NodeId, std::unordered_set<std::string_view>> givenTags_;  // by parent

 public:
  std::vector<Diagnostic> diagnostics;
  std::set<TagPlace> unknown;  ///< tags whose values could not be read
  std::vector<std::pair<const InputBlock*, const InputTag*>> badDefaults;
  std::unordered_set<std::size_t> toldStray;  ///< where stray words begin that are told of already
  std::unordered_set<NodeId> closedInValues;  ///< blocks whose closing brace stands in a value
};

/// Finds what is wrong with the setup.
class Document::Checker {
 public:
  explicit Checker(Document& document) : d_(&document), b_(document.builder_.get()) {}

  void run() {
    d_->diagnostics_ = std::move(b_->diagnostics);
    explainSyntaxFaults();
    for (const auto& [block, tag] : b_->badDefaults) {
      tellMissingTag(*block, *tag->getLogicalMaster());
    }
    checkContent(*d_->root_);
    checkRules(*d_->root_);
    checkEncoding();
    tellStops();
    tellFindings();
    dropFollowing();
    checkTextForm();
    silenceWarnings(d_->syntax_, d_->lines_, d_->diagnostics_);
    std::stable_sort(
        d_->diagnostics_.begin(), d_->diagnostics_.end(),
        [](const Diagnostic& a, const Diagnostic& b) { return a.at.at.begin < b.at.at.begin; });
    dropRepeated();
    settle();
  }

 private:
  /// Several blocks may tell the same of a third one. What is the same stands together.
  void dropRepeated() {
    std::set<std::tuple<std::string_view, std::size_t, std::string_view, std::uint32_t,
                        std::uint32_t, std::string_view>>
        told;
    std::vector<Diagnostic> kept;
    kept.reserve(d_->diagnostics_.size());
    std::vector<char> isFirst;
    for (const Diagnostic& each : d_->diagnostics_) {
      isFirst.push_back(told.emplace(each.code, each.at.at.begin, each.at.file, each.at.line,
                                     each.at.column, each.message)
                                .second
                            ? 1
                            : 0);
    }
    for (std::size_t i = 0; i < isFirst.size(); ++i) {
      if (isFirst[i] != 0) {
        kept.push_back(std::move(d_->diagnostics_[i]));
      }
    }
    d_->diagnostics_ = std::move(kept);
  }

  Diagnostic& add(Severity severity, std::string_view code, Span at, std::string message,
                  std::string help) {
    d_->diagnostics_.push_back({.severity = severity,
                                .code = std::string(code),
                                .at = {.at = at},
                                .message = std::move(message),
                                .help = std::move(help)});
    return d_->diagnostics_.back();
  }

  void explainSyntaxFaults() {
    std::optional<std::size_t> outermost;
    for (const TreeFaultAt& fault : d_->syntax_.faults()) {
      if (fault.kind == TreeFault::missingClosingBrace && b_->closedInValues.contains(fault.node)) {
        continue;
      }
      if (b_->toldStray.contains(fault.at.begin)) {
        continue;
      }
      const NodeId parent = fault.node == noNode ? noNode : d_->syntax_[fault.node].parent;
      d_->diagnostics_.push_back(
          explainSyntax({d_->syntax_, fault, b_->blockAt(parent), d_->lines_}));
      // Words that shall close a block are told with it.
      if (fault.kind == TreeFault::missingClosingBrace) {
        b_->toldStray.insert(d_->diagnostics_.back().at.at.begin);
      }
      if (fault.kind == TreeFault::missingClosingBrace && isOpenAtEnd(fault.node)) {
        if (outermost) {
          joinToOutermost(d_->diagnostics_[*outermost]);
        } else {
          outermost = d_->diagnostics_.size() - 1;
        }
      }
    }
  }

  /// Whether a block is open up to the end of the file.
  [[nodiscard]] bool isOpenAtEnd(NodeId id) const {
    for (NodeId at = id; at != noNode; at = d_->syntax_[at].parent) {
      if (d_->syntax_[at].isClosed || d_->syntax_[at].next != noNode) {
        return false;
      }
    }
    return true;
  }

  /// Blocks that are open at the end of the file are one fault, told at the outermost. The last
  /// diagnostic becomes part of that.
  void joinToOutermost(Diagnostic& outermost) {
    Diagnostic inner = std::move(d_->diagnostics_.back());
    d_->diagnostics_.pop_back();
    relate(outermost, inner.at.at, "this block is not closed either");
    outermost.help = "write a '}' for each of them at the end of the file";
    if (!outermost.fixes.empty() && !inner.fixes.empty()) {
      // Inner blocks are closed first.
      std::vector<Edit>& edits = outermost.fixes.front().edits;
      edits.insert(edits.begin(), inner.fixes.front().edits.begin(),
                   inner.fixes.front().edits.end());
      outermost.fixes.front().message = "write the missing '}'";
    }
  }

  /// The header of the block, or of the nearest one above that stands in the file.
  [[nodiscard]] Span headerOf(const InputBlock& block) const {
    for (const InputBlock* at = &block; at != nullptr; at = at->getActualParent()) {
      const NodeId id = d_->nodeOf(*at);
      if (id != noNode) {
        return d_->syntax_[id].name();
      }
    }
    return {};
  }

  /// Tags, and what is missing, here and below.
  void checkContent(InputBlock& block) {
    d_->goOn();
    checkTags(block);
    for (InputBlock& child : block.blocks()) {
      checkContent(child);
    }
    for (const InputBlock& master : block.logicalBlocks()) {
      if (master.isMandatory() && block.getNumBlocksNamed(master.getName()) == 0) {
        tellMissingBlock(block, master);
      }
    }
  }

  /// The rules, those of sub-blocks first.
  void checkRules(InputBlock& block) {
    for (InputBlock& child : block.blocks()) {
      checkRules(child);
    }
    d_->goOn();
    const auto stop = stopOf([&block] { block.checkRulesAlone(); });
    for (const Message& message : block.getErrors()) {
      tellRule(Severity::error, block, message);
    }
    for (const Message& message : block.getWarnings()) {
      tellRule(Severity::warning, block, message);
    }
    if (stop && stop->kind != Stopped::Kind::skipped) {
      stops_.emplace_back(&block, *stop);
    }
  }

  void checkTags(InputBlock& block) {
    for (InputTag& tag : block.tags()) {
      if (isUnknown(tag)) {
        continue;
      }
      const bool isValid = tag.validate();
      const NodeId id = isValid && tag.getWarnings().empty() ? noNode : d_->nodeOf(tag);
      if (id == noNode) {
        continue;
      }
      if (!isValid) {
        const SyntaxNode& node = d_->syntax_[id];
        d_->diagnostics_.push_back(
            explainValue({tag, block, d_->syntax_.text(), d_->syntax_.valueOf(node), node.name(),
                          tag.getErrors().empty() ? "" : tag.getErrors().front()}));
      } else if (!tag.getWarnings().empty()) {
        tellWarnings(block, tag, d_->syntax_[id]);
      }
    }
    for (const InputTag& prototype : block.logicalTags()) {
      if (block.findTag(prototype.getPosition()) == nullptr && prototype.isMandatory(&block)) {
        tellMissingTag(block, prototype);
      }
    }
  }

  /// Whether the value of a tag could not be read.
  [[nodiscard]] bool isUnknown(const InputTag& tag) const {
    return b_->unknown.contains(placeOf(tag));
  }

  void tellWarnings(const InputBlock& block, const InputTag& tag, const SyntaxNode& node) {
    bool isConditional = false;
    for (const TagRule& rule : traitsOf(*tag.getLogicalMaster()).rules) {
      const InputTag* const sibling =
          rule.condition == nullptr ? nullptr : rule.condition->findSibling(block);
      if (sibling == nullptr || rule.condition->isMet(*sibling)) {
        continue;
      }
      isConditional = true;
      if (isUnknown(*sibling)) {
        continue;
      }
      Diagnostic& told = add(Severity::warning, code::unusedTag, node.name(),
                             fmt::format("'{}' is not used, since '{}' is '{}'", tag.getName(),
                                         sibling->getName(), sibling->getRawValue()),
                             rule.condition->equals
                                 ? fmt::format("remove it, or set '{}' to {}", sibling->getName(),
                                               alternatives(rule.condition->values))
                                 : fmt::format("remove it, or change '{}'", sibling->getName()));
      const NodeId other = d_->nodeOf(*sibling);
      if (other != noNode) {
        relate(told, d_->syntax_[other].whole(),
               fmt::format("'{}' is set here", sibling->getName()));
      }
    }
    if (!isConditional) {
      add(Severity::warning, code::unusualValue, d_->syntax_.valueOf(node),
          fmt::format("'{}' is an unusual value of '{}'", tag.getRawValue(), tag.getName()),
          tag.getUnit().empty() ? std::string("check the value")
                                : fmt::format("check the value and its unit {}", tag.getUnit()));
    }
  }

  static std::string alternatives(const std::vector<std::string>& values) {
    std::string text;
    for (std::size_t i = 0; i < values.size(); ++i) {
      text += (i == 0 ? "" : i + 1 == values.size() ? " or " : ", ") + ("'" + values[i] + "'");
    }
    return text;
  }

  /// Whether what stands in place of something that could not be read may have been meant as
  /// `name`.
  [[nodiscard]] bool mayBeMeant(const InputBlock& block, std::string_view name) const {
    const NodeId id = d_->nodeOf(block);
    if (id == noNode && &block != d_->root_.get()) {
      return false;
    }
    for (NodeId child = d_->syntax_[id].firstChild; child != noNode;
         child = d_->syntax_[child].next) {
      if (d_->made_[child] != nullptr) {
        continue;
      }
      const std::string_view text = d_->syntax_[child].name().in(d_->syntax_.blanked());
      // What lacks its name may be what is missing.
      if (text.empty() || text.find(name) != std::string_view::npos ||
          !nearestName(text, {name}).empty()) {
        return true;
      }
      if (d_->syntax_[child].kind == NodeKind::tag) {
        const std::vector<std::string> words =
            split(" \t\n=", d_->syntax_[child].value().in(d_->syntax_.blanked()));
        if (std::find(words.begin(), words.end(), name) != words.end()) {
          return true;
        }
      }
      if (d_->syntax_[child].kind == NodeKind::stray) {
        for (const std::string& word : split(" \t\n:;,\"'", text)) {
          if (!nearestName(word, {name}).empty()) {
            return true;
          }
        }
      }
    }
    return false;
  }

  void tellMissingTag(const InputBlock& block, const InputTag& prototype) {
    hasGaps_ = true;
    if (mayBeMeant(block, prototype.getName()) ||
        (b_->unknown.contains({&block, prototype.getPosition()}) &&
         block.findTag(prototype.getPosition()) == nullptr)) {
      return;
    }
    const TagTraits traits = traitsOf(prototype);
    std::string why;
    for (const TagRule& rule : traits.rules) {
      const InputTag* const sibling =
          rule.condition == nullptr ? nullptr : rule.condition->findSibling(block);
      if (sibling != nullptr && isUnknown(*sibling)) {
        return;
      }
      if (sibling != nullptr && why.empty()) {
        why = fmt::format(", which '{} = {}' needs", sibling->getName(), sibling->getRawValue());
      }
    }
    const std::vector<std::string> allowed = allowedValuesOf(prototype);
    std::string help = fmt::format("add '{} = ...'", prototype.getName());
    if (!allowed.empty()) {
      help += fmt::format(" with one of {}", fmt::join(allowed, ", "));
    } else if (traits.kind != ValueKind::text || !traits.pattern.empty()) {
      help += ", " + wantedValue(prototype, block);
    }
    add(Severity::error, code::missingTag, headerOf(block),
        fmt::format("'{}' lacks the tag '{}'{}", block.getName(), prototype.getName(), why),
        std::move(help));
  }

  void tellMissingBlock(const InputBlock& block, const InputBlock& master) {
    hasGaps_ = true;
    missingBlocks_.insert(withoutDashes(codeName(master.getName())));
    if (mayBeMeant(block, master.getName())) {
      return;
    }
    add(Severity::error, code::missingBlock, headerOf(block),
        block.getActualParent() == nullptr
            ? fmt::format("the block '{}' is missing", master.getName())
            : fmt::format("'{}' lacks the block '{}'", block.getName(), master.getName()),
        fmt::format("add '{} {{ ... }}'", master.getName()));
  }

  /// The words of all that could not be read.
  [[nodiscard]] const std::set<std::string, std::less<>>& skippedWords() {
    if (!skippedWords_) {
      skippedWords_.emplace();
      for (const Span& span : b_->skipped_) {
        for (std::string& word : split(" \t\n(){}=,;\"'", span.in(d_->syntax_.blanked()))) {
          skippedWords_->insert(std::move(word));
        }
      }
    }
    return *skippedWords_;
  }

  /// Where a subject stands in the command file; nothing when it was not given.
  [[nodiscard]] std::optional<TextPlace> textOf(const Subject& subject) const {
    if (!subject.file.empty()) {
      TextPlace place{.at = headerOf(*subject.block), .file = subject.file, .line = subject.line};
      place.column = std::max(1U, subject.column);
      place.endColumn = place.column + 1;
      return place;
    }
    if (subject.member.empty()) {
      const NodeId id = d_->nodeOf(*subject.block);
      return id == noNode ? std::nullopt : std::optional(TextPlace{.at = d_->syntax_[id].name()});
    }
    const InputTag* const tag = tagOf(subject);
    const NodeId id = tag == nullptr ? noNode : d_->nodeOf(*tag);
    if (id == noNode) {
      return std::nullopt;
    }
    Span at = d_->syntax_.valueOf(d_->syntax_[id]);
    if (subject.item > 0) {
      at = itemAt(at, subject.item);
    }
    return TextPlace{.at = at.empty() ? d_->syntax_[id].name() : at};
  }

  [[nodiscard]] static const InputTag* tagOf(const Subject& subject) {
    const int position = subject.block->getTagPositionOfMember(subject.member);
    return position < 0 ? nullptr : subject.block->findTag(static_cast<std::size_t>(position));
  }

  /// The item of a list, counted from 1; the whole value when it has no such item.
  [[nodiscard]] Span itemAt(Span list, std::size_t number) const {
    const std::string_view text = d_->syntax_.blanked();
    constexpr std::string_view separators = " \t\n\r()";
    std::size_t at = list.begin;
    for (std::size_t i = 0;; ++i) {
      at = text.find_first_not_of(separators, at);
      if (at >= list.end) {
        return list;
      }
      const std::size_t end = std::min(text.find_first_of(separators, at), list.end);
      if (i + 1 == number) {
        return {at, end};
      }
      at = end;
    }
  }

  [[nodiscard]] static std::string withoutDashes(std::string name) {
    std::erase(name, '-');
    return name;
  }

  /// Whether the value of a tag, or an item of it, names something that could not be read.
  [[nodiscard]] bool namesSkipped(const InputTag& tag, std::size_t item) {
    if (b_->skipped_.empty()) {
      return false;
    }
    std::vector<std::string> items = split(" \t\n().", tag.getRawValue());
    if (item > 0 && item <= items.size()) {
      items = {items[item - 1]};
    }
    return std::any_of(items.begin(), items.end(),
                       [this](const auto& each) { return skippedWords().contains(each); });
  }

  /// Whether a message only follows from what was told already.
  [[nodiscard]] bool isConsequence(const MessageDetails& details) {
    bool isFirst = true;
    for (const Subject& subject : details.subjects) {
      const bool isTag = !subject.member.empty();
      const InputTag* const tag = isTag ? tagOf(subject) : nullptr;
      const int position = isTag ? subject.block->getTagPositionOfMember(subject.member) : -1;
      if (position >= 0 &&
          b_->unknown.contains({subject.block, static_cast<std::size_t>(position)})) {
        return true;
      }
      if (position >= 0 && tag == nullptr) {
        const InputTag& prototype =
            subject.block->getLogicalTag(static_cast<std::size_t>(position));
        if (prototype.isMandatory(subject.block) ||
            mayBeMeant(*subject.block, prototype.getName())) {
          return true;
        }
      }
      if (isFirst && tag != nullptr && namesSkipped(*tag, subject.item)) {
        return true;
      }
      isFirst = false;
    }
    constexpr std::string_view lacks = "no-";
    return details.rule.starts_with(lacks) &&
           missingBlocks_.contains(withoutDashes(std::string(details.rule.substr(lacks.size()))));
  }

  void tellRule(Severity severity, const InputBlock& block, const Message& message) {
    if (message.details == nullptr) {
      add(severity, code::stopped, headerOf(block), message.text, "change what the message names");
      return;
    }
    const MessageDetails& details = *message.details;
    if (isConsequence(details)) {
      return;
    }
    Diagnostic told{.severity = severity,
                    .code = codeName(block.getName()) + "/" + std::string(details.rule),
                    .at = {.at = headerOf(block)},
                    .message = details.sentence,
                    .help = details.help};
    bool isPlaced = false;
    for (const Subject& subject : details.subjects) {
      std::optional<TextPlace> place = textOf(subject);
      if (!place && &subject == &details.subjects.front() && subject.block != &block) {
        place = textOf(about(*subject.block));
      }
      if (!place) {
        continue;
      }
      if (!isPlaced) {
        told.at = *place;
        isPlaced = true;
      } else if (!(place->at == told.at.at && place->file == told.at.file)) {
        told.related.push_back({*place, relationOf(subject, details.subjects.front(),
                                                   place->at.begin < told.at.at.begin)});
      }
    }
    if (details.rule == "missing-file" && !details.subjects.empty()) {
      explainMissing(told, details.subjects.front());
    }
    if (!told.at.file.empty()) {
      relate(told, told.at.at, "the file is named here");
    }
    if (toldOfRules_
            .emplace(told.code, told.at.at.begin, told.at.file, told.at.line, told.at.column,
                     told.message)
            .second) {
      d_->diagnostics_.push_back(std::move(told));
    }
  }

  /// Says more of a file that a rule misses, if there is more to say.
  void explainMissing(Diagnostic& told, const Subject& subject) const {
    const InputTag* const tag = tagOf(subject);
    if (tag == nullptr || tag->getRawValue().empty()) {
      return;
    }
    const MissingFile missing = explainMissingFile(tag->getRawValue());
    told.help = missing.help;
    if (missing.message != fmt::format("the file '{}' does not exist", tag->getRawValue())) {
      told.message = missing.message;
    }
    if (!missing.meant.empty()) {
      told.fixes.push_back(
          {fmt::format("write '{}'", missing.meant), {{told.at.at, missing.meant}}});
    }
  }

  [[nodiscard]] static std::string relationOf(const Subject& subject, const Subject& first,
                                              bool isEarlier) {
    if (subject.block != first.block && subject.member == first.member) {
      return isEarlier ? "the first is here" : "the other is here";
    }
    if (subject.block == first.block && subject.member == first.member && subject.item > 0) {
      return "the other is here";
    }
    const InputTag* const tag = subject.member.empty() ? nullptr : tagOf(subject);
    return tag == nullptr ? fmt::format("this is the '{}'", subject.block->getName())
                          : fmt::format("'{}' is set here", tag->getName());
  }

  /// Stops of rules. Where values or blocks are missing, they follow from that.
  void tellStops() {
    std::set<std::string> told;
    for (const auto& [block, stop] : stops_) {
      const bool isMesh = stop.text.starts_with("Cannot open the grid file");
      if (isMesh || hasGaps_ || !b_->unknown.empty() || !b_->skipped_.empty() ||
          !told.insert(stop.text).second) {
        continue;
      }
      StopWords words = explainStop(stop.text);
      add(Severity::error, code::stopped, headerOf(*block), std::move(words.message),
          std::move(words.help));
    }
  }

  /// What only the checker finds, unless the library tells of the same text. What the converter
  /// refuses for it is told where it is found, and not where that leads to.
  void tellFindings() {
    std::vector<Diagnostic> found = findInSetup(
        *d_, d_->options_.readsFiles,
        [this](std::string_view word) { return skippedWords().contains(word); },
        d_->options_.checkedFiles);
    std::set<Span, EarlierSpan> told;
    for (const Diagnostic& each : d_->diagnostics_) {
      told.insert(each.at.at);
    }
    Ends ends = endsOfConverter();
    std::vector<Diagnostic> kept;
    for (Diagnostic& each : found) {
      if (each.at.file.empty() ? touchesAny(told, each.at.at) : isToldByRule(ends, each)) {
        continue;
      }
      const bool isCause = each.severity == Severity::error || isAloneInFile(found, each);
      if (isCause && takeConsequences(ends, each)) {
        each.origin = Origin::converter;
        each.severity = Severity::error;
      }
      kept.push_back(std::move(each));
    }
    std::erase_if(d_->diagnostics_,
                  [&ends](const Diagnostic& each) { return ends.taken.contains(&each); });
    std::move(kept.begin(), kept.end(), std::back_inserter(d_->diagnostics_));
  }

  /// What is told of the converter's end that may follow from what is found.
  struct Ends {
    std::multimap<std::size_t, const Diagnostic*> byPlace;      ///< where the cause may stand
    std::multimap<std::string_view, const Diagnostic*> series;  ///< unequal rows, by the file
    std::vector<const Diagnostic*> sections;  ///< cross sections that are not in the list
    std::set<const Diagnostic*> taken;        ///< what follows indeed
  };

  [[nodiscard]] Ends endsOfConverter() const {
    Ends ends;
    for (const Diagnostic& told : d_->diagnostics_) {
      if (told.code.ends_with("/not-in-mesh") && !told.related.empty()) {
        ends.byPlace.emplace(told.related.front().at.at.begin, &told);
      } else if (isAboutRows(told) || told.code == code::stopped) {
        ends.byPlace.emplace(told.at.at.begin, &told);
      } else if (told.code == code::unequalRows && told.at.file.empty()) {
        ends.series.emplace(told.at.at.in(d_->syntax_.text()), &told);
      } else if (told.code.ends_with("/unknown-cross-section")) {
        ends.sections.push_back(&told);
      }
    }
    return ends;
  }

  /// Whether nothing worse is found in the file of `each`, an encoding.
  static bool isAloneInFile(const std::vector<Diagnostic>& found, const Diagnostic& each) {
    return each.code == code::foreignEncoding &&
           std::none_of(found.begin(), found.end(), [&each](const Diagnostic& other) {
             return other.severity == Severity::error && other.at.file == each.at.file;
           });
  }

  struct EarlierSpan {
    bool operator()(const Span& a, const Span& b) const { return a.begin < b.begin; }
  };

  static bool touchesAny(const std::set<Span, EarlierSpan>& spans, Span at) {
    const auto next = spans.upper_bound(at);
    return (next != spans.begin() && std::prev(next)->end > at.begin) ||
           (next != spans.end() && next->begin < at.end);
  }

  /// Whether a rule of the block tells of the series that is found too short.
  static bool isToldByRule(const Ends& ends, const Diagnostic& found) {
    const auto [begin, end] = ends.byPlace.equal_range(found.at.at.begin);
    return (found.code == code::oneColumn || found.code == code::emptySeries ||
            found.code == code::seriesBeginsLate || found.code == code::seriesEndsEarly) &&
           std::any_of(begin, end, [&ends, &found](const auto& each) {
             const Diagnostic& told = *each.second;
             return told.at.at == found.at.at && isAboutRows(told) && !ends.taken.contains(&told);
           });
  }

  /// Whether a rule tells of the numbers of rows and columns that were read from a series.
  static bool isAboutRows(const Diagnostic& told) {
    return told.code.ends_with("/series-columns") || told.code.ends_with("/short-series");
  }

  /// Takes away what is told of the converter's end where `found` is the cause: a series that it
  /// cannot read, a mesh with nothing in it, or a name that a rule of the block takes for granted.
  bool takeConsequences(Ends& ends, const Diagnostic& found) const {
    const std::size_t before = ends.taken.size();
    const bool isText = found.code == code::textInSeries || found.code == code::seriesSeparator ||
                        found.code == code::notText;
    const bool isMesh = found.code == code::emptyMesh || found.code == code::notText;
    const auto [begin, end] = ends.byPlace.equal_range(found.at.at.begin);
    for (auto it = begin; it != end; ++it) {
      const Diagnostic& told = *it->second;
      const bool isLost = told.code.ends_with("/not-in-mesh");
      if ((isText && told.at.at == found.at.at && isAboutRows(told)) ||
          (isMesh && isLost && told.related.front().at.at == found.at.at)) {
        ends.taken.insert(&told);
      }
    }
    if (found.code == code::unknownName && found.at.file.empty()) {
      const NodeId tag = d_->syntax_.nodeAt(found.at.at.begin);
      const Span header = d_->syntax_[d_->syntax_[tag].parent].name();
      const auto [first, last] = ends.byPlace.equal_range(header.begin);
      for (auto it = first; it != last; ++it) {
        if (it->second->code == code::stopped && it->second->at.at == header) {
          ends.taken.insert(it->second);
        }
      }
    }
    const auto [first, last] = ends.series.equal_range(found.at.file);
    for (auto it = first; it != last; ++it) {
      ends.taken.insert(it->second);
    }
    if (found.code == code::notAList) {
      takeSeparatedNames(ends, d_->syntax_.nodeAt(found.at.at.begin));
    }
    return ends.taken.size() > before;
  }

  /// Takes away that a cross section is not in the list of the tag `list` where it stands there
  /// with a comma.
  void takeSeparatedNames(Ends& ends, NodeId list) const {
    const std::string_view text = d_->syntax_.text();
    std::set<std::string, std::less<>> names;
    for (std::string& name :
         split(" \t\r\n(),;", d_->syntax_.valueOf(d_->syntax_[list]).in(text))) {
      names.insert(std::move(name));
    }
    for (const Diagnostic* told : ends.sections) {
      if (names.contains(told->at.at.in(text))) {
        ends.taken.insert(told);
      }
    }
  }

  /// Drops what only follows from other errors: names that nothing bears as long as the blocks that
  /// could bear them lack a right one, weirs that a controller may not find, and ends of a channel
  /// at which a boundary may be meant to lie.
  void dropFollowing() {
    std::map<std::string_view, std::size_t> misnamed;  // by the blocks
    std::size_t lostPlaces = 0;                        // of what controllers move
    std::size_t lowWeirs = 0;
    std::set<NodeId> openChannels;
    for (const Diagnostic& told : d_->diagnostics_) {
      if (told.severity != Severity::error || !told.at.file.empty()) {
        continue;
      }
      const NodeId block = blockAt(told.at.at);
      const std::string_view tag = tagNameAt(told.at.at);
      if (tag == "cross_section_order" ||
          (told.code == code::missingTag &&
           told.message.find("'cross_section_order'") != std::string::npos)) {
        misnamed["cross section"] = d_->diagnostics_.size();
      } else if (isMisnamed(told)) {
        ++misnamed[d_->syntax_[block].name().in(d_->syntax_.text())];
      }
      lostPlaces += tag == "position" ? 1 : 0;
      lowWeirs += isLowWeir(told) ? 1 : 0;
      if ((tag == "string" && !isOfRule(told)) ||
          (told.code == code::missingTag &&
           told.message.find("the tag 'string'") != std::string::npos)) {
        openChannels.insert(d_->syntax_[block].parent);
      }
    }
    const auto lost = lostNames(misnamed);
    const bool mayBeMoved = lowWeirs <= lostPlaces || misnamed.contains("KESTCHAIN_1D");
    std::erase_if(d_->diagnostics_, [&](const Diagnostic& told) {
      const bool isOpen =
          told.code.ends_with("stream-boundary") && openChannels.contains(blockAt(told.at.at));
      return isOpen || (mayBeMoved && isLowWeir(told)) ||
             std::any_of(lost.begin(), lost.end(), [&](const auto& each) {
               return each.second.size() <= misnamed[each.first] && isLost(told, each.first);
             });
    });
  }

  /// The names that nothing bears, by the blocks of `misnamed` that could bear them.
  [[nodiscard]] std::map<std::string_view, std::set<std::string_view>> lostNames(
      const std::map<std::string_view, std::size_t>& misnamed) const {
    std::map<std::string_view, std::set<std::string_view>> lost;
    for (const Diagnostic& told : d_->diagnostics_) {
      for (const auto& [block, count] : misnamed) {
        if (isLost(told, block)) {
          lost[block].insert(lostNameOf(told));
        }
      }
    }
    return lost;
  }

  static bool isOfRule(const Diagnostic& told) { return told.code.find('/') != std::string::npos; }

  static bool isLowWeir(const Diagnostic& told) {
    return told.code.ends_with("/weir-without-level");
  }

  /// Whether a block has no name, or one that cannot be read or be its own.
  [[nodiscard]] bool isMisnamed(const Diagnostic& told) const {
    constexpr std::array<std::string_view, 4> rules{"/second-name", "/second-region-name",
                                                    "/not-in-mesh", "/coupling-without-name"};
    const auto isName = [](std::string_view tag) { return tag == "name" || tag == "region_name"; };
    if (told.code == code::missingTag) {
      return told.message.find("the tag 'name'") != std::string::npos ||
             told.message.find("the tag 'region_name'") != std::string::npos;
    }
    return std::any_of(rules.begin(), rules.end(),
                       [&told](std::string_view rule) { return told.code.ends_with(rule); }) ||
           (!isOfRule(told) && isName(tagNameAt(told.at.at)));
  }

  /// The name of the tag at `at`; empty when none stands there.
  [[nodiscard]] std::string_view tagNameAt(Span at) const {
    const SyntaxNode& node = d_->syntax_[d_->syntax_.nodeAt(at.begin)];
    return node.kind == NodeKind::tag ? node.name().in(d_->syntax_.text()) : std::string_view();
  }

  /// The block at `at`, or the one whose tag stands there.
  [[nodiscard]] NodeId blockAt(Span at) const {
    const NodeId id = d_->syntax_.nodeAt(at.begin);
    return d_->syntax_[id].kind == NodeKind::tag ? d_->syntax_[id].parent : id;
  }

  /// Whether `told` is of a name that no `block` bears.
  [[nodiscard]] static bool isLost(const Diagnostic& told, std::string_view block) {
    if (told.code != code::unknownName && told.code.find("/unknown-") == std::string::npos) {
      return false;
    }
    const bool isRegion = block.starts_with("KEST");
    return told.message.find(isRegion ? "region named '" : std::string(block)) != std::string::npos;
  }

  /// The name in the text that `told` is of: that of the region, where a place follows it.
  [[nodiscard]] std::string_view lostNameOf(const Diagnostic& told) const {
    const std::string_view text = told.at.at.in(d_->syntax_.text());
    return told.message.find("region named '") == std::string::npos
               ? text
               : text.substr(0, text.find('.'));
  }

  /// Texts of the document must be UTF-8.
  void checkEncoding() {
    const std::string& text = d_->syntax_.text();
    const TextForm form = formOfText(text);
    if (form.invalidByte == std::string_view::npos && !form.isBinary) {
      return;
    }
    for (NodeId id = 1; id < d_->syntax_.nodes().size(); ++id) {
      const SyntaxNode& node = d_->syntax_[id];
      if (node.kind != NodeKind::tag || d_->made_[id] == nullptr) {
        continue;
      }
      const Span value = d_->syntax_.valueOf(node);
      const InputTag& tag = *static_cast<const InputTag*>(d_->made_[id]);
      if (isUtf8(value.in(text)) || !reachesDocument(tag)) {
        continue;
      }
      Span at = value;
      for (bool isValid = true; isValid; at.begin += isValid ? at.size() : 0) {
        at.end =
            at.begin +
            codePointLength(std::string_view(text).substr(at.begin, value.end - at.begin), isValid);
      }
      add(Severity::error, code::notUtf8, at,
          fmt::format("the value of '{}' is not UTF-8", tag.getName()),
          "save the file as UTF-8, or write the value in plain letters");
    }
  }

  /// What editors do to a whole file. The converter's errors only follow from that.
  void checkTextForm() {
    const std::string& text = d_->syntax_.text();
    const TextForm form = formOfText(text);
    const bool isOneLine =
        form.loneReturn != std::string_view::npos && text.find('\n') == std::string::npos;
    const auto isRefused = [](const Diagnostic& told) {
      return told.severity == Severity::error && told.origin == Origin::converter;
    };
    const auto is = [](std::string_view code) {
      return [code](const Diagnostic& told) { return told.code == code; };
    };
    auto& all = d_->diagnostics_;
    const bool wasRefused = std::any_of(all.begin(), all.end(), isRefused);
    if ((form.isWide || isOneLine) && wasRefused) {
      all.clear();
    }
    const Origin origin = wasRefused ? Origin::converter : Origin::checker;
    if (form.isWide) {
      add(Severity::error, code::notText, {0, utf16MarkSize},
          "the file is in UTF-16, and not plain text", "save it as plain text in UTF-8")
          .origin = origin;
    } else if (isOneLine) {
      add(wasRefused ? Severity::error : Severity::warning, code::foreignLineEnds,
          {form.loneReturn, form.loneReturn + 1},
          "the lines end with a carriage return alone, so that the whole file is one line",
          "save the file with line feeds as line ends")
          .origin = origin;
    } else if (form.invalidByte != std::string_view::npos &&
               std::none_of(all.begin(), all.end(), is(code::notUtf8))) {
      add(Severity::warning, code::foreignEncoding, {form.invalidByte, form.invalidByte + 1},
          "the file is not in UTF-8: programs refuse this byte, or show another letter",
          "save the file as UTF-8, or write plain letters")
          .origin = Origin::checker;
    }
  }

  /// Whether the value of a tag stands in the document.
  [[nodiscard]] static bool reachesDocument(const InputTag& tag) {
    const std::string_view block = tag.getActualParent()->getName();
    return block != "PARALLEL" && (block != "PROJECT" || tag.getName() == "title");
  }

  /// Holds the diagnostics against what the converter does.
  void settle() {
    const bool hasErrors =
        std::any_of(d_->diagnostics_.begin(), d_->diagnostics_.end(), [](const Diagnostic& told) {
          return told.severity == Severity::error && told.origin == Origin::converter;
        });
    if (!d_->options_.readsFiles) {
      return;
    }
    if (!hasErrors) {
      d_->converts_ = true;
      return;
    }
    const std::optional<ConverterStop> stop = d_->runConverter();
    d_->converts_ = !stop.has_value();
    for (Diagnostic& told : d_->diagnostics_) {
      if (!stop && told.severity == Severity::error) {
        told.origin = Origin::checker;
      }
    }
  }

  Document* d_;
  Builder* b_;
  std::set<std::string> missingBlocks_;  // by their names in codes, without dashes
  bool hasGaps_ = false;                 // whether mandatory tags or blocks are missing
  std::vector<std::pair<const InputBlock*, Stopped>> stops_;
  std::optional<std::set<std::string, std::less<>>> skippedWords_;
  std::set<std::tuple<std::string, std::size_t, std::string, std::uint32_t, std::uint32_t,
                      std::string>>
      toldOfRules_;  ///< several blocks may tell the same of a third one
};

std::shared_ptr<const SyntaxTree> Document::readTree(std::string text,
                                                     const KestrixInputRoot& schema) {
  return std::make_shared<const SyntaxTree>(
      std::move(text),
      [&schema](const auto& open, std::string_view name) { return mayStand(schema, open, name); });
}

Document::Document(std::string text, const KestrixInputRoot& schema, DocumentOptions options)
    : Document(readTree(std::move(text), schema), schema, std::move(options)) {}

Document::Document(std::shared_ptr<const SyntaxTree> tree, const KestrixInputRoot& schema,
                   DocumentOptions options)
    : options_(std::move(options)),
      schema_(&schema),
      tree_(std::move(tree)),
      syntax_(*tree_),
      lines_(syntax_.text()),
      root_(schema.logicalClone(nullptr)) {
  prepare(values_);
  values_.readFiles = std::move(options_.readFiles);
  values_.explainsMessages = true;
  const ActiveValues active(values_);
  builder_ = std::make_unique<Builder>(*this);
  builder_->run();
}

Document::~Document() {
  // The setup looks into the values of the file while it is destroyed.
  const ActiveValues active(values_);
  root_.reset();
}

void Document::goOn() const {
  if (options_.stop.stop_requested()) {
    throw Cancelled();
  }
}

std::string Document::pathOf(std::string_view name, const std::string& directory) {
  GlobalValues values;
  setFolders(values, directory);
  const ActiveValues active(values);
  return openedPath(resolvePath(name));
}

void Document::prepare(GlobalValues& values) {
  setFolders(values, options_.directory);
  values.readsFiles = options_.readsFiles;
  values.keepsSeries = true;
  values.console = &console_;
}

const std::vector<Diagnostic>& Document::check() {
  if (!isChecked_) {
    isChecked_ = true;
    const ActiveValues active(values_);
    Checker(*this).run();
  }
  return diagnostics_;
}

std::optional<bool> Document::converts() {
  check();
  return converts_;
}

std::optional<Document::ConverterStop> Document::runConverter() {
  GlobalValues values;
  prepare(values);
  values.readFiles = values_.readFiles;
  const ActiveValues active(values);
  std::optional<ConverterStop> result;
  auto root = schema_->logicalClone(nullptr);
  const auto stop = stopOf([&] {
    InputParser parser(*root);
    std::istringstream in(syntax_.text());
    parser.parse(in, false, "");
    std::ostringstream summary;
    if (!parser.validateSummary(summary)) {
      result = ConverterStop{"the validation of the setup finds errors"};
    }
  });
  if (stop) {
    result = ConverterStop{stop->text};
    const std::size_t at = stop->text.find("near line ");
    if (stop->text.starts_with("Parse error") && at != std::string::npos) {
      constexpr std::size_t length = std::string_view("near line ").size();
      result->line = static_cast<std::uint32_t>(stringToInt(stop->text.substr(at + length)));
    }
  }
  const bool hasBadText =
      std::any_of(diagnostics_.begin(), diagnostics_.end(),
                  [](const Diagnostic& told) { return told.code == code::notUtf8; });
  if (!result && hasBadText) {
    result = ConverterStop{"a text of the document is not UTF-8"};
  }
  return result;
}

const InputBlock* Document::blockOf(NodeId node) const {
  return builder_->blockAt(node);
}

const InputTag* Document::tagOf(NodeId node) const {
  return syntax_[node].kind == NodeKind::tag ? static_cast<const InputTag*>(made_[node]) : nullptr;
}

NodeId Document::find(const void* made) const {
  // A table of places with as many free ones: it is made at once, of what may be a million nodes.
  const bool isNew = places_.empty();
  if (isNew) {
    places_.assign(std::bit_ceil(2 * made_.size() + 1), noNode);
  }
  const auto placeOf = [this](const void* object) {
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
    constexpr int shift = 32;
    const std::uint64_t mixed = std::hash<const void*>()(object) * factor;
    std::size_t place = static_cast<std::size_t>(mixed >> shift) & (places_.size() - 1);
    while (places_[place] != noNode && made_[places_[place]] != object) {
      place = (place + 1) & (places_.size() - 1);
    }
    return place;
  };
  for (NodeId id = 0; isNew && id < made_.size(); ++id) {
    if (made_[id] != nullptr) {
      // Of the places of a repeated tag the first one counts.
      NodeId& first = places_[placeOf(made_[id])];
      first = first == noNode ? id : first;
    }
  }
  return places_[placeOf(made)];
}

NodeId Document::nodeOf(const InputBlock& block) const {
  return find(&block);
}

NodeId Document::nodeOf(const InputTag& tag) const {
  return find(&tag);
}

}  // namespace KESTparse
