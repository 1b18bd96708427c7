#include "KESTparse/framework/InputBlock.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <memory_resource>
#include <utility>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/InputTagVisitor.h"

namespace KESTparse {
namespace {

const std::vector<Message> noMessages;
const std::string noFile;

std::string quoted(std::string_view name) {
  return fmt::format("'{}'", name);
}

/// The names of a list of schema nodes, each between single quotes.
template <class Nodes, class NameOf>
std::string quotedNames(const Nodes& nodes, NameOf nameOf) {
  std::string names;
  for (const auto& node : nodes) {
    names += (names.empty() ? "" : ", ") + quoted(nameOf(node));
  }
  return names;
}

/// The place of `name` among `names`, which are few and differ; -1 when it is none of them. The
/// search begins at the place `from`.
int positionOf(std::string_view name, const std::vector<std::string_view>& names,
               std::size_t from = 0) {
  const auto start = names.begin() + static_cast<std::ptrdiff_t>(from);
  auto it = std::find(start, names.end(), name);
  if (it == names.end()) {
    it = std::find(names.begin(), start, name);
    return it == start ? -1 : static_cast<int>(it - names.begin());
  }
  return static_cast<int>(it - names.begin());
}

}  // namespace

struct InputBlock::Extras {
  std::vector<Message> errors;
  std::vector<Message> warnings;
  std::map<const InputTag*, TagMessages> ofTags;
  unsigned refusedTags = 0;
  std::unique_ptr<std::pmr::monotonic_buffer_resource> texts;
};

BlockSchema::BlockSchema(const InputBlock& owner, std::string_view keyword, InputBlock* parent,
                         bool isMandatory, bool isRepeatable)
    : name(keyword),
      master(&owner),
      logicalParent(parent),
      mandatory(isMandatory),
      repeatable(isRepeatable) {}

BlockSchema::~BlockSchema() = default;

InputBlock::InputBlock(std::string_view name, InputBlock* logicalParent, bool mandatory,
                       bool repeatable)
    : ownSchema_(std::make_unique<BlockSchema>(*this, name, logicalParent, mandatory, repeatable)),
      schema_(ownSchema_.get()) {}

InputBlock::InputBlock(const InputBlock& master) : schema_(master.schema_) {
  schema_->frozen.store(true, std::memory_order_relaxed);
}

InputBlock::~InputBlock() = default;

void InputBlock::accept(InputBlockVisitor& visitor) const {
  visitor.visit(*this);
}

void InputBlock::getLongDescription(std::ostream& /*out*/) const {}

void InputBlock::getExample(std::ostream& /*out*/) const {}

std::size_t InputBlock::getLogicalNumBlocks() const {
  return schema_->subBlocks.size();
}

std::size_t InputBlock::getLogicalNumTags() const {
  return schema_->tags.size();
}

const InputBlock& InputBlock::getLogicalBlock(std::size_t index) const {
  ASSERT(index < schema_->subBlocks.size(), "index < this->blocks_.size()");
  return declaredBlock(index);
}

const InputTag& InputBlock::getLogicalTag(std::size_t index) const {
  ASSERT(index < schema_->tags.size(), "index < this->tags_.size()");
  return *schema_->tags[index];
}

int InputBlock::getLogicalTagPosition(std::string_view name) const {
  return positionOf(name, schema_->tagNames);
}

int InputBlock::getLogicalBlockPosition(std::string_view name) const {
  return positionOf(name, schema_->blockNames);
}

InputBlock& InputBlock::getBlock(std::size_t index) {
  return const_cast<InputBlock&>(std::as_const(*this).getBlock(index));
}

const InputBlock& InputBlock::getBlock(std::size_t index) const {
  ASSERT(index < availableBlocks_.size(), "index < this->available_blocks_.size()");
  return *availableBlocks_[index];
}

InputTag& InputBlock::getTag(std::size_t index) {
  return const_cast<InputTag&>(std::as_const(*this).getTag(index));
}

const InputTag& InputBlock::getTag(std::size_t index) const {
  ASSERT(index < availableTags_.size(), "index < this->available_tags_.size()");
  return *availableTags_[index];
}

InputBlock& InputBlock::getBlock(std::string_view name, std::size_t index) {
  return const_cast<InputBlock&>(std::as_const(*this).getBlock(name, index));
}

const InputBlock& InputBlock::getBlock(std::string_view name, std::size_t index) const {
  std::size_t found = 0;
  for (const auto& block : availableBlocks_) {
    if (block->getName() == name && found++ == index) {
      return *block;
    }
  }
  ASSERT(false, "InputBlock: Block " << quoted(name) << " with index '" << index
                                     << "' does not exists as only " << found
                                     << " blocks of this type are available.");
}

InputTag& InputBlock::getTag(std::string_view name, std::size_t index) {
  return const_cast<InputTag&>(std::as_const(*this).getTag(name, index));
}

const InputTag& InputBlock::getTag(std::string_view name, std::size_t index) const {
  std::size_t found = 0;
  for (const auto& tag : availableTags_) {
    if (tag->getName() == name && found++ == index) {
      return *tag;
    }
  }
  ASSERT(false, "InputBlock: Tag " << quoted(name) << " with index '" << index
                                   << "' does not exists as only " << found
                                   << " tags of this type are available.");
}

std::size_t InputBlock::countBlocks(std::size_t position) const {
  return subBlocks_ == nullptr ? 0 : subBlocks_[position].count;
}

std::size_t InputBlock::indexOf(const InputTag& tag) const {
  const auto it = std::find_if(availableTags_.begin(), availableTags_.end(),
                               [&tag](const auto& other) { return other.get() == &tag; });
  return it == availableTags_.end() ? 0 : static_cast<std::size_t>(it - availableTags_.begin());
}

const InputTag* InputBlock::findTagFarBehind(std::size_t position) const {
  const auto it =
      std::find_if(availableTags_.begin() + (farBehind - 1), availableTags_.end(),
                   [position](const auto& tag) { return tag->getPosition() == position; });
  return it->get();
}

std::size_t InputBlock::countTags(std::size_t position) const {
  if (findTag(position) == nullptr) {
    return 0;
  }
  if (!schema_->tags[position]->isRepeatable()) {
    return 1;
  }
  return static_cast<std::size_t>(
      std::count_if(availableTags_.begin(), availableTags_.end(),
                    [position](const auto& tag) { return tag->getPosition() == position; }));
}

std::size_t InputBlock::getNumBlocksNamed(std::string_view name) const {
  const int position = getLogicalBlockPosition(name);
  ASSERT(position >= 0, "Block named " << name << " does not exists in the logical block list");
  return countBlocks(static_cast<std::size_t>(position));
}

std::size_t InputBlock::getNumTagsNamed(std::string_view name) const {
  const int position = getLogicalTagPosition(name);
  ASSERT(position >= 0, "Tag named " << name << " does not exists in the logical tag list");
  return countTags(static_cast<std::size_t>(position));
}

const InputBlock* InputBlock::getBlockByPath(std::string_view path) const {
  const InputBlock* block = this;
  std::string_view rest = path;
  while (block != nullptr && !rest.empty()) {
    const std::size_t end = std::min(rest.find('/'), rest.size());
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (part == "..") {
      block = block->actualParent_;
      continue;
    }
    // The blocks of a name are many where their sub-blocks ask for a neighbour.
    const int position = block->getLogicalBlockPosition(part);
    ASSERT(position >= 0, "Block named " << quoted(part) << " within path " << path
                                         << " does not exist within block "
                                         << quoted(block->getName()));
    const auto index = static_cast<std::size_t>(position);
    block = block->subBlocks_ == nullptr ? nullptr : block->subBlocks_[index].first;
  }
  return block;
}

const std::string& InputBlock::getFileName() const {
  return fileName_ == nullptr ? noFile : *fileName_;
}

InputBlock& InputBlock::getBlock(std::string_view name,
                                 const std::shared_ptr<const std::string>& fileName,
                                 unsigned line) {
  const int position = getLogicalBlockPosition(name);
  if (position < 0) {
    const std::string names = quotedNames(
        schema_->subBlocks, [](const SubBlockRow& row) { return row.master->getName(); });
    throw InputParseError(
        ParseErrorKind::unknownBlock,
        "Block named " + quoted(name) + " is not a valid block name within block " +
            quoted(getName()) + "." +
            (names.empty() ? " There is no subblock" : " Valid blocks are " + names));
  }
  const auto index = static_cast<std::size_t>(position);
  const InputBlock& master = declaredBlock(index);
  if (!master.isRepeatable() && countBlocks(index) > 0) {
    throw InputParseError(
        ParseErrorKind::secondBlock,
        "Block named " + quoted(name) + " is non-repeatable, but second block defined");
  }
  const std::size_t numBlocks = availableBlocks_.size();
  InputBlock& block = addBlock(master.logicalClone(this));
  ASSERT(availableBlocks_.size() == numBlocks + 1,
         "You need to call InputBlock::addBlock in your addBlock routine in block " << getName());
  block.fileName_ = fileName;
  block.line_ = line;
  expectTagsLikeThoseBefore(block);
  return block;
}

void InputBlock::expectTagsLikeThoseBefore(InputBlock& last) const {
  if (availableBlocks_.size() < 2) {
    return;
  }
  const InputBlock& before = **(availableBlocks_.end() - 2);
  if (before.schema_ == last.schema_) {
    last.availableTags_.reserve(before.availableTags_.size());
  }
}

InputTag& InputBlock::getTag(std::string_view name) {
  // Most files give the tags in the order of the manual, which is that of the schema.
  const std::size_t next = availableTags_.empty() ? 0 : availableTags_.back()->getPosition() + 1;
  const int position = positionOf(name, schema_->tagNames, next);
  if (position < 0) {
    const std::string names =
        quotedNames(schema_->tags, [](const auto& tag) { return tag->getName(); });
    throw InputParseError(ParseErrorKind::unknownTag,
                          "Tag named " + quoted(name) + " is not defined within block " +
                              quoted(getName()) +
                              (names.empty() ? ". Actually, there are no tags in this block"
                                             : ". Valid tag names are " + names));
  }
  const auto index = static_cast<std::size_t>(position);
  const InputTag& prototype = *schema_->tags[index];
  if (!prototype.isRepeatable() && findTag(index) != nullptr) {
    throw InputParseError(
        ParseErrorKind::secondTag,
        "Tag named " + quoted(name) + " is non-repeatable, but second tag defined.");
  }
  return addTag(prototype.logicalClone(*this));
}

SubBlockRow& InputBlock::rowOf(const InputBlock& child) const {
  const std::size_t own = child.schema_->position;
  if (own < schema_->subBlocks.size() && schema_->subBlocks[own].master->schema_ == child.schema_) {
    return schema_->subBlocks[own];
  }
  const int position = getLogicalBlockPosition(child.getName());
  ASSERT(position >= 0,
         "unknown block" << (spellsOutUnknownNames() ? " named " + std::string(child.getName())
                                                     : std::string()));
  return schema_->subBlocks[static_cast<std::size_t>(position)];
}

InputBlock& InputBlock::addBlock(std::unique_ptr<InputBlock> child) {
  const SubBlockRow& row = rowOf(*child);
  row.file(*this, *child);
  SubBlocks& like = subBlocks(row.master->schema_->position);
  ++like.count;
  if (like.first == nullptr) {
    like.first = child.get();
  }
  return takeBlock(std::move(child));
}

InputBlock::SubBlocks& InputBlock::subBlocks(std::size_t position) {
  if (subBlocks_ == nullptr) {
    subBlocks_ = std::make_unique<SubBlocks[]>(schema_->subBlocks.size());
  }
  return subBlocks_[position];
}

InputBlock& InputBlock::takeBlock(std::unique_ptr<InputBlock> child) {
  ++GlobalValues::instance().treeChanges;
  child->actualParent_ = this;
  availableBlocks_.push_back(std::move(child));
  return *availableBlocks_.back();
}

InputTag& InputBlock::addTag(std::unique_ptr<InputTag> tag) {
  takeTag(std::move(tag));
  return *availableTags_.back();
}

void InputBlock::takeTag(std::unique_ptr<InputTag> tag) {
  ++GlobalValues::instance().treeChanges;
  if (firstTag_ == nullptr) {
    firstTag_ = std::make_unique<std::uint16_t[]>(schema_->tags.size());
  }
  std::uint16_t& first = firstTag_[tag->getPosition()];
  availableTags_.push_back(std::move(tag));
  if (first == 0) {
    first = static_cast<std::uint16_t>(std::min(availableTags_.size(), farBehind));
  }
}

void InputBlock::countTags() {
  firstTag_.reset();
  std::vector<std::unique_ptr<InputTag>> tags;
  tags.swap(availableTags_);
  for (auto& tag : tags) {
    takeTag(std::move(tag));
  }
}

void InputBlock::removeAll() {
  while (!availableBlocks_.empty()) {
    removeBlock(*availableBlocks_.back());
  }
  while (!availableTags_.empty()) {
    removeTag(*availableTags_.back());
  }
}

void InputBlock::removeBlock(InputBlock& child) {
  ++GlobalValues::instance().treeChanges;
  const SubBlockRow& row = rowOf(child);
  const bool wasFiled = row.unfile(*this, child);
  ASSERT(wasFiled, "Error while trying to delete a subblock name '"
                       << child.getName() << (spellsOutUnknownNames() ? "'" : "")
                       << " of block from vector. Its not in there!");
  const auto it = std::find_if(availableBlocks_.begin(), availableBlocks_.end(),
                               [&child](const auto& block) { return block.get() == &child; });
  ASSERT(it != availableBlocks_.end(), "it != available_blocks_.end()");
  child.removeAll();
  SubBlocks& like = subBlocks(row.master->schema_->position);
  --like.count;
  const auto next = availableBlocks_.erase(it);
  if (like.first == &child) {
    const auto other = std::find_if(next, availableBlocks_.end(), [&row](const auto& block) {
      return block->schema_ == row.master->schema_;
    });
    like.first = other == availableBlocks_.end() ? nullptr : other->get();
  }
}

void InputBlock::removeTag(InputTag& tag) {
  const std::size_t index = tag.getIndex();
  ASSERT(index < getNumTags(), "tag->getIndex() < getNumTags() in block '"
                                   << getName() << "' for tag '" << tag.getName() << "' as "
                                   << index << " >= " << getNumTags());
  ASSERT(tag.getActualParent() == this, "tag->getActualParent() == this");
  ++GlobalValues::instance().treeChanges;
  tag.assignPreset();
  forgetMessagesOf(tag);
  availableTags_.erase(availableTags_.begin() + static_cast<std::ptrdiff_t>(index));
  countTags();
}

void InputBlock::addStandingBlocks() {}

void InputBlock::populateTags() {
  for (const auto& prototype : schema_->tags) {
    if (!prototype->getDefaultValue().empty() && findTag(prototype->getPosition()) == nullptr &&
        !prototype->isSuppressed(*this)) {
      takeTag(prototype->logicalClone(*this));
      availableTags_.back()->setRawValue(prototype->getDefaultValue());
    }
  }
}

void InputBlock::populate() {
  addStandingBlocks();
  populateTags();
  for (const auto& block : availableBlocks_) {
    block->populate();
  }
}

void InputBlock::validateTags() {
  const std::uint64_t changes = GlobalValues::instance().treeChanges;
  const bool isUnchanged = tagsCheckedAt_ == changes;
  if (!isUnchanged) {
    unsigned refused = 0;
    tagsHaveMessages_ = false;
    for (const auto& tag : availableTags_) {
      refused += tag->validate() ? 0 : 1;
      tagsHaveMessages_ =
          tagsHaveMessages_ || !tag->getErrors().empty() || !tag->getWarnings().empty();
    }
    if (refused > 0 || extras_ != nullptr) {
      extras().refusedTags = refused;
    }
    tagsCheckedAt_ = changes;
  }
  if (isUnchanged && !lacksTags_) {
    return;
  }
  lacksTags_ = false;
  for (const auto& prototype : schema_->tags) {
    if (findTag(prototype->getPosition()) == nullptr && prototype->isMandatory(this)) {
      addMessage(Severity::error,
                 {"Tag " + quoted(prototype->getName()) + " is mandatory but missing.", nullptr});
      lacksTags_ = true;
    }
  }
}

bool InputBlock::tagsAreSilent() const {
  return !tagsHaveMessages_ && tagsCheckedAt_ == GlobalValues::instance().treeChanges;
}

unsigned InputBlock::validateTree() {
  forgetMessages();
  validateTags();
  unsigned errors = extras_ == nullptr ? 0 : extras_->refusedTags;
  for (const auto& block : availableBlocks_) {
    errors += block->validate();
  }
  for (const SubBlockRow& row : schema_->subBlocks) {
    if (row.master->isMandatory() && countBlocks(row.master->schema_->position) == 0) {
      addMessage(
          Severity::error,
          {"Block " + quoted(row.master->getName()) + " is mandatory but missing.", nullptr});
    }
  }
  return errors + static_cast<unsigned>(getErrors().size());
}

unsigned InputBlock::validate() {
  const unsigned errors = validateTree();
  const std::size_t ownErrors = getErrors().size();
  checkRulesAlways();
  if (errors == 0) {
    checkRules();
  }
  return errors + static_cast<unsigned>(getErrors().size() - ownErrors);
}

void InputBlock::checkRulesAlone() {
  forgetMessages();
  checkRulesAlways();
  checkRules();
}

void InputBlock::checkRules() {}

void InputBlock::checkRulesAlways() {}

std::size_t InputBlock::getNumWarnings() const {
  std::size_t warnings = getWarnings().size();
  for (const auto& block : availableBlocks_) {
    warnings += block->getNumWarnings();
  }
  if (!tagsAreSilent()) {
    for (const auto& tag : availableTags_) {
      warnings += tag->getWarnings().size();
    }
  }
  return warnings;
}

std::size_t InputBlock::getNumErrors() const {
  std::size_t errors = getErrors().size();
  for (const auto& block : availableBlocks_) {
    errors += block->getNumErrors();
  }
  if (!tagsAreSilent()) {
    for (const auto& tag : availableTags_) {
      errors += tag->getErrors().size();
    }
  }
  return errors;
}

InputBlock::Extras& InputBlock::extras() {
  if (extras_ == nullptr) {
    extras_ = std::make_unique<Extras>();
  }
  return *extras_;
}

void InputBlock::forgetMessages() {
  if (extras_ != nullptr) {
    extras_->errors.clear();
    extras_->warnings.clear();
  }
}

TagMessages& InputBlock::messagesOf(const InputTag& tag) {
  return extras().ofTags[&tag];
}

void InputBlock::forgetMessagesOf(const InputTag& tag) {
  if (extras_ != nullptr) {
    extras_->ofTags.erase(&tag);
  }
}

std::string_view InputBlock::keepText(std::string_view text) {
  if (actualParent_ != nullptr) {
    return actualParent_->keepText(text);
  }
  auto& texts = extras().texts;
  if (texts == nullptr) {
    texts = std::make_unique<std::pmr::monotonic_buffer_resource>();
  }
  char* const kept = static_cast<char*>(texts->allocate(text.size(), 1));
  std::copy(text.begin(), text.end(), kept);
  return {kept, text.size()};
}

const std::vector<Message>& InputBlock::getErrors() const {
  return extras_ == nullptr ? noMessages : extras_->errors;
}

const std::vector<Message>& InputBlock::getWarnings() const {
  return extras_ == nullptr ? noMessages : extras_->warnings;
}

void InputBlock::addMessage(Severity severity, Message message) {
  auto& list = severity == Severity::error ? extras().errors : extras().warnings;
  list.push_back(std::move(message));
}

int InputBlock::getTagPositionOfMember(std::string_view member) const {
  const auto it = std::find_if(schema_->facts.begin(), schema_->facts.end(),
                               [member](const auto& facts) { return facts->memberName == member; });
  return it == schema_->facts.end() ? -1 : static_cast<int>(it - schema_->facts.begin());
}

void InputBlock::createSubBlocks() {}

void InputBlock::initialise() {}

bool InputBlock::spellsOutUnknownNames() const {
  return false;
}

void InputBlock::build() {
  createSubBlocks();
  createTags();
  for (const auto& tag : schema_->tags) {
    tag->link();
    tag->assignPreset();
  }
  initialise();
  schema_->declared.store(true, std::memory_order_release);
}

const InputBlock& InputBlock::declaredBlock(std::size_t position) const {
  InputBlock& master = *schema_->subBlocks[position].master;
  master.declare();
  return master;
}

SubBlockAttributes InputBlock::addLogicalBlock(SubBlockRow row) {
  ASSERT(row.master != nullptr, "child != nullptr");
  ASSERT(getLogicalMaster() == nullptr, "LOGICAL stuff must be applied to the master");
  BlockSchema& schema = *row.master->schema_;
  schema.position = static_cast<std::uint32_t>(schema_->subBlocks.size());
  schema_->blockNames.push_back(schema.name);
  schema_->subBlocks.push_back(std::move(row));
  return SubBlockAttributes(schema);
}

InputTag& InputBlock::addLogicalTag(std::unique_ptr<TagFacts> facts,
                                    std::unique_ptr<InputTag> tag) {
  ASSERT(!schema_->frozen && availableBlocks_.empty() && availableTags_.empty(),
         "LOGICAL stuff might not be changed after the tree is beeing populated");
  facts->position = static_cast<std::uint32_t>(schema_->tags.size());
  schema_->tagNames.push_back(facts->name);
  facts->prototype = tag.get();
  schema_->facts.push_back(std::move(facts));
  schema_->tags.push_back(std::move(tag));
  return *schema_->tags.back();
}

void InputBlock::ensureBlock(std::string_view name) {
  if (getNumBlocksNamed(name) == 0) {
    const int position = getLogicalBlockPosition(name);
    addBlock(declaredBlock(static_cast<std::size_t>(position)).logicalClone(this));
  }
}

void InputBlock::identifiedBy(std::vector<std::string_view> tags) {
  schema_->identifyingTags = std::move(tags);
}

}  // namespace KESTparse
