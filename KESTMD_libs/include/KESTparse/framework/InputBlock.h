/// \file
/// The block: a place in the schema, and one block of a command file.
#pragma once

#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/base/Assert.h"
#include "KESTparse/framework/Counted.h"
#include "KESTparse/framework/Message.h"

namespace KESTparse {

class InputBlockVisitor;
class InputTag;
class SubBlockAttributes;
struct Condition;
struct SubBlockRow;
struct TagFacts;
struct TagMessages;

/// What the schema says of a block class at one place of the tree. The master owns it, its
/// instances read it.
struct BlockSchema {
  std::string_view name;               ///< the keyword
  const InputBlock* master;            ///< the block that owns this
  InputBlock* logicalParent;           ///< the master that holds this one; null for the root
  bool mandatory;                      ///< must appear in its parent
  bool repeatable;                     ///< may appear more than once
  std::uint32_t position = 0;          ///< place among the sub-blocks of the parent
  std::vector<SubBlockRow> subBlocks;  ///< the logical sub-blocks, in order
  std::vector<std::unique_ptr<InputTag>> tags;         ///< the prototypes, in order
  std::vector<std::unique_ptr<TagFacts>> facts;        ///< what the prototypes tell
  std::vector<std::unique_ptr<Condition>> conditions;  ///< what conditional tags depend on
  std::vector<std::string_view> identifyingTags;       ///< tags that tell instances apart
  std::vector<std::string_view> blockNames;            ///< of the sub-blocks, in order
  std::vector<std::string_view> tagNames;              ///< of the prototypes, in order
  std::once_flag declaration;         ///< the class adds its sub-blocks and its tags once
  std::atomic<bool> declared{false};  ///< set behind that
  std::atomic<bool> frozen{false};    ///< set by the first instance: no more can be added

  BlockSchema(const InputBlock& owner, std::string_view keyword, InputBlock* parent,
              bool isMandatory, bool isRepeatable);
  ~BlockSchema();
};

/// Base of all block classes. A master stands in the schema, one for each place in the tree;
/// `logicalClone` makes the instance for a block of a command file. The root is both.
class InputBlock {
 public:
  /// A master.
  InputBlock(std::string_view name, InputBlock* logicalParent, bool mandatory, bool repeatable);
  InputBlock& operator=(const InputBlock&) = delete;
  virtual ~InputBlock();

  virtual void accept(InputBlockVisitor& visitor) const;

  // What the schema says.

  [[nodiscard]] std::string_view getName() const { return schema_->name; }
  [[nodiscard]] bool isMandatory() const { return schema_->mandatory; }
  [[nodiscard]] bool isRepeatable() const { return schema_->repeatable; }
  /// What the block is for, in one line.
  virtual void getDescription(std::ostream& out) const = 0;
  /// More on it; may write nothing.
  virtual void getLongDescription(std::ostream& out) const;
  /// A piece of a command file that shows the block; may write nothing.
  virtual void getExample(std::ostream& out) const;
  [[nodiscard]] std::size_t getLogicalNumBlocks() const;
  [[nodiscard]] std::size_t getLogicalNumTags() const;
  /// A logical sub-block. An index beyond them is an assertion.
  [[nodiscard]] const InputBlock& getLogicalBlock(std::size_t index) const;
  /// A prototype. An index beyond them is an assertion.
  [[nodiscard]] const InputTag& getLogicalTag(std::size_t index) const;
  /// The logical sub-blocks, in order.
  [[nodiscard]] auto logicalBlocks() const {
    return Counted(getLogicalNumBlocks(),
                   [this](std::size_t i) -> const InputBlock& { return getLogicalBlock(i); });
  }
  /// The prototypes, in order.
  [[nodiscard]] auto logicalTags() const {
    return Counted(getLogicalNumTags(),
                   [this](std::size_t i) -> const InputTag& { return getLogicalTag(i); });
  }
  /// Place of a tag in the schema; -1 when the block has none of that name.
  [[nodiscard]] int getLogicalTagPosition(std::string_view name) const;
  /// Place of a sub-block in the schema; -1 when the block has none of that name.
  [[nodiscard]] int getLogicalBlockPosition(std::string_view name) const;
  [[nodiscard]] const InputBlock* getLogicalParent() const { return schema_->logicalParent; }
  /// The master of an instance; null for a master.
  [[nodiscard]] const InputBlock* getLogicalMaster() const {
    return ownSchema_ == nullptr ? schema_->master : nullptr;
  }
  /// Names of the tags that tell one instance from its like.
  [[nodiscard]] const std::vector<std::string_view>& getIdentifyingTags() const {
    return schema_->identifyingTags;
  }

  // What the command file says.

  [[nodiscard]] InputBlock* getActualParent() const { return actualParent_; }
  [[nodiscard]] std::size_t getNumBlocks() const { return availableBlocks_.size(); }
  [[nodiscard]] std::size_t getNumTags() const { return availableTags_.size(); }
  /// A sub-block in file order. An index beyond them is an assertion.
  [[nodiscard]] const InputBlock& getBlock(std::size_t index) const;
  [[nodiscard]] InputBlock& getBlock(std::size_t index);
  /// A tag in file order. An index beyond them is an assertion.
  [[nodiscard]] const InputTag& getTag(std::size_t index) const;
  [[nodiscard]] InputTag& getTag(std::size_t index);
  /// The sub-blocks, in file order.
  [[nodiscard]] auto blocks() const {
    return Counted(getNumBlocks(),
                   [this](std::size_t i) -> const InputBlock& { return *availableBlocks_[i]; });
  }
  [[nodiscard]] auto blocks() {
    return Counted(getNumBlocks(),
                   [this](std::size_t i) -> InputBlock& { return *availableBlocks_[i]; });
  }
  /// The tags, in file order.
  [[nodiscard]] auto tags() const {
    return Counted(getNumTags(),
                   [this](std::size_t i) -> const InputTag& { return *availableTags_[i]; });
  }
  [[nodiscard]] auto tags() {
    return Counted(getNumTags(), [this](std::size_t i) -> InputTag& { return *availableTags_[i]; });
  }
  /// The `index`-th sub-block of that name. An assertion when there are fewer.
  [[nodiscard]] const InputBlock& getBlock(std::string_view name, std::size_t index) const;
  [[nodiscard]] InputBlock& getBlock(std::string_view name, std::size_t index);
  /// The `index`-th tag of that name. An assertion when there are fewer.
  [[nodiscard]] const InputTag& getTag(std::string_view name, std::size_t index) const;
  [[nodiscard]] InputTag& getTag(std::string_view name, std::size_t index);
  /// How many sub-blocks of that name there are. An assertion for a name that the schema has not.
  [[nodiscard]] std::size_t getNumBlocksNamed(std::string_view name) const;
  /// How many tags of that name there are. An assertion for a name that the schema has not.
  [[nodiscard]] std::size_t getNumTagsNamed(std::string_view name) const;
  /// Whether a tag of that name was given, by the file or by its default.
  [[nodiscard]] bool hasTag(std::string_view name) const { return getNumTagsNamed(name) > 0; }
  /// The first instance of the tag at a place of the schema; null when there is none.
  [[nodiscard]] const InputTag* findTag(std::size_t position) const {
    const std::size_t first = firstTag_ == nullptr ? 0 : firstTag_[position];
    return first == 0          ? nullptr
           : first < farBehind ? availableTags_[first - 1].get()
                               : findTagFarBehind(position);
  }
  /// The first instance of the tag `name`; null when there is none, or the schema has no such tag.
  [[nodiscard]] const InputTag* findTag(std::string_view name) const {
    const int position = getLogicalTagPosition(name);
    return position < 0 ? nullptr : findTag(static_cast<std::size_t>(position));
  }
  /// Place of `tag` in file order; 0 when this block does not hold it.
  [[nodiscard]] std::size_t indexOf(const InputTag& tag) const;
  /// The block at `path` below this one, with `..` for the parent; null when the file has none. A
  /// name that the schema has not is an assertion.
  [[nodiscard]] const InputBlock* getBlockByPath(std::string_view path) const;
  /// The nearest instance of the class `T` above this block; null when there is none.
  template <class T>
  [[nodiscard]] T* ancestor() const;
  /// The nearest instance of the class `T` above this block, where the schema has one. An assertion
  /// when there is none.
  template <class T>
  [[nodiscard]] T& enclosing() const;
  /// File in which the block stands; empty for a block that population made.
  [[nodiscard]] const std::string& getFileName() const;
  /// Line of the byte behind the opening brace.
  [[nodiscard]] unsigned getLine() const { return line_; }

  // Building the schema.

  /// Builds the schema of this master, once: sub-blocks, tags, presets. Each sub-block builds its
  /// own when it is first used, since a command file uses a few of them. Files that are read side
  /// by side may share a schema.
  void declare() {
    if (!schema_->declared.load(std::memory_order_acquire)) {
      std::call_once(schema_->declaration, [this] { build(); });
    }
  }
  /// Adds a logical sub-block; an assertion on an instance.
  SubBlockAttributes addLogicalBlock(SubBlockRow row);
  /// Adds a prototype and what it tells; an assertion once there are instances.
  InputTag& addLogicalTag(std::unique_ptr<TagFacts> facts, std::unique_ptr<InputTag> tag);

  // Building the actual tree.

  /// A new instance of the logical sub-block `name`, as read in `fileName` at `line`. Throws an
  /// `InputParseError` for an unknown name and for the second instance of one that does not repeat.
  InputBlock& getBlock(std::string_view name, const std::shared_ptr<const std::string>& fileName,
                       unsigned line);
  /// A new instance of the tag `name`. Throws an `InputParseError` likewise.
  InputTag& getTag(std::string_view name);
  /// A new instance of this master in `actualParent`, its variables holding the presets.
  [[nodiscard]] virtual std::unique_ptr<InputBlock> logicalClone(
      InputBlock* actualParent) const = 0;
  /// Takes `child` in and files it into the member that its row of the schema names.
  virtual InputBlock& addBlock(std::unique_ptr<InputBlock> child);
  /// A copy of `text` that lasts as long as the tree of which this block is a part.
  std::string_view keepText(std::string_view text);
  /// Takes `tag` in.
  virtual InputTag& addTag(std::unique_ptr<InputTag> tag);
  /// Destroys a sub-block and all that stands in it. An assertion when it is none of this block's.
  virtual void removeBlock(InputBlock& child);
  /// Destroys a tag; its variable holds the preset again. An assertion when it is none of this
  /// block's.
  void removeTag(InputTag& tag);
  /// Adds the tags that were left out but have a default, here and in all sub-blocks.
  void populate();
  /// Adds the sub-blocks that every setup has.
  virtual void addStandingBlocks();
  /// Adds the tags of this block alone that were left out but have a default. A default that its
  /// tag refuses is thrown as an `InputParseError`; a further call goes on behind it.
  void populateTags();

  // Validation.

  /// Checks this block and all below it anew; returns the number of errors.
  unsigned validate();
  /// Runs all rules of this block alone, whatever is wrong with its tags or below it. Its messages
  /// are then those of the rules.
  void checkRulesAlone();
  /// Warnings of this block, its tags and all below it.
  [[nodiscard]] std::size_t getNumWarnings() const;
  /// Errors of this block, its tags and all below it.
  [[nodiscard]] std::size_t getNumErrors() const;
  [[nodiscard]] const std::vector<Message>& getErrors() const;
  [[nodiscard]] const std::vector<Message>& getWarnings() const;
  /// Adds an error or a warning; rules add theirs by the words of `RuleMessage.h`.
  void addMessage(Severity severity, Message message);
  /// The messages of one of its tags.
  TagMessages& messagesOf(const InputTag& tag);
  void forgetMessagesOf(const InputTag& tag);
  /// The place in the schema of the tag that is bound to `member`; -1 when there is none.
  [[nodiscard]] int getTagPositionOfMember(std::string_view member) const;

 protected:
  /// The start of an instance of `master`, which the copied class completes.
  InputBlock(const InputBlock& master);

  /// Declares the tags of the class, one row each.
  virtual void createTags() = 0;
  /// Declares the sub-blocks of the class, one row each.
  virtual void createSubBlocks();
  /// Sets what the presets do not reach, once the tags of a master exist.
  virtual void initialise();
  /// The checks of the class on a subtree without errors.
  virtual void checkRules();
  /// The checks of the class that run even when the subtree has errors, before `checkRules`.
  virtual void checkRulesAlways();
  /// Whether the assertions of the bookkeeping show the names of unknown blocks.
  [[nodiscard]] virtual bool spellsOutUnknownNames() const;

  /// Makes this copy of a master an instance in `actualParent`.
  void bindTo(InputBlock* actualParent) { actualParent_ = actualParent; }
  /// Takes `child` in without filing it.
  InputBlock& takeBlock(std::unique_ptr<InputBlock> child);
  /// Adds an instance of the sub-block `name` unless there is one.
  void ensureBlock(std::string_view name);
  /// Names the tags that tell one instance from its like.
  void identifiedBy(std::vector<std::string_view> tags);

 private:
  friend struct BlockSchema;
  friend class TagRowBase;
  /// What few blocks have: messages, and at the top of a tree its texts.
  struct Extras;

  /// The instances of a sub-block.
  struct SubBlocks {
    InputBlock* first = nullptr;  ///< null when there is none
    std::uint32_t count = 0;
  };

  Extras& extras();
  /// Forgets what this block said, but not what its tags said.
  void forgetMessages();
  void build();
  unsigned validateTree();
  /// Checks the tags and reports those that are missing. What tags say depends on their own values
  /// and on their siblings', so that they are asked again only when a tree was changed.
  void validateTags();
  /// Whether no tag has an error or a warning, as far as that is known without asking them.
  [[nodiscard]] bool tagsAreSilent() const;
  [[nodiscard]] const InputTag* findTagFarBehind(std::size_t position) const;
  /// Makes room for the tags of `last`: its like in front of it has as many, as a rule.
  void expectTagsLikeThoseBefore(InputBlock& last) const;
  void takeTag(std::unique_ptr<InputTag> tag);
  void countTags();
  void removeAll();
  [[nodiscard]] std::size_t countBlocks(std::size_t position) const;
  [[nodiscard]] std::size_t countTags(std::size_t position) const;
  /// The logical sub-block at a place of the schema, ready to be used.
  [[nodiscard]] const InputBlock& declaredBlock(std::size_t position) const;
  [[nodiscard]] SubBlocks& subBlocks(std::size_t position);
  /// The row of the schema for `child`; an assertion when there is none.
  [[nodiscard]] SubBlockRow& rowOf(const InputBlock& child) const;

  /// Stands for a place that is too far behind for `firstTag_`: only a tag that stands behind
  /// thousands of the same name is searched for.
  static constexpr std::size_t farBehind = 0xffff;

  // A large setup has hundreds of thousands of blocks, so they hold nothing that few of them need.
  std::unique_ptr<BlockSchema> ownSchema_;  ///< null for an instance
  BlockSchema* schema_;
  InputBlock* actualParent_ = nullptr;
  std::vector<std::unique_ptr<InputBlock>> availableBlocks_;
  std::vector<std::unique_ptr<InputTag>> availableTags_;
  /// For each tag of the schema the place of its first instance in `availableTags_`, counted
  /// from 1; null when there is none at all.
  std::unique_ptr<std::uint16_t[]> firstTag_;
  /// For each sub-block of the schema; null when there is none at all.
  std::unique_ptr<SubBlocks[]> subBlocks_;
  std::unique_ptr<Extras> extras_;
  std::shared_ptr<const std::string> fileName_;
  unsigned line_ = 0;
  bool tagsHaveMessages_ = false;
  bool lacksTags_ = false;
  std::uint64_t tagsCheckedAt_ = 0;
};

/// The attributes of a sub-block, as its parent declares them.
class SubBlockAttributes {
 public:
  explicit SubBlockAttributes(BlockSchema& schema) : schema_(&schema) {}
  /// The block must appear.
  SubBlockAttributes& mandatory() {
    schema_->mandatory = true;
    return *this;
  }
  /// The block may appear more than once.
  SubBlockAttributes& repeatable() {
    schema_->repeatable = true;
    return *this;
  }

 private:
  BlockSchema* schema_;
};

/// A sub-block in the schema of its parent.
struct SubBlockRow {
  std::unique_ptr<InputBlock> master;
  /// Files an instance into the member of the parent.
  void (*file)(InputBlock& parent, InputBlock& child) = nullptr;
  /// Takes an instance out of the member of the parent; false when it is not there.
  bool (*unfile)(InputBlock& parent, const InputBlock& child) = nullptr;
};

template <class T>
T* InputBlock::ancestor() const {
  for (InputBlock* block = actualParent_; block != nullptr; block = block->actualParent_) {
    if (T* const found = dynamic_cast<T*>(block); found != nullptr) {
      return found;
    }
  }
  return nullptr;
}

template <class T>
T& InputBlock::enclosing() const {
  T* const found = ancestor<T>();
  ASSERT(found != nullptr, "");
  return *found;
}

}  // namespace KESTparse
