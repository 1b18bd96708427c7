/// \file
/// The tag of a block: what the schema says of it, and one value of it in a command file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KESTparse {

class InputBlock;
class InputTag;
class InputTagVisitor;

/// What the schema says of a tag. One for each tag of a block class; the prototype and all
/// instances read it. The texts are literals and outlive the process.
struct TagFacts {
  std::string_view name;         ///< the keyword
  std::string_view memberName;   ///< the variable of the block that takes the value
  std::string_view description;  ///< help of one line
  std::string_view unit;         ///< such as "[m2]"; empty if there is none
  std::string defaultValue;  ///< what population gives a tag that the file left out; may be empty
  std::string presetValue;   ///< what the bound variable holds as long as no value is set
  std::vector<std::string> restrictedValues;  ///< the only allowed values, if there are any
  bool mandatory = false;                     ///< must be given
  bool repeatable = false;                    ///< may be given more than once
  std::uint32_t position = 0;                 ///< place among the tags of its block class
  const InputTag* prototype = nullptr;        ///< the prototype, with its conditions around it

  TagFacts() = default;
  TagFacts(const TagFacts&) = delete;
  TagFacts& operator=(const TagFacts&) = delete;
  virtual ~TagFacts() = default;
};

/// What a check said of one tag.
struct TagMessages {
  std::vector<std::string> errors;
  std::vector<std::string> warnings;
};

/// Base of all tag kinds. A prototype stands in the schema; `logicalClone` makes an instance of it
/// for a value in a command file.
class InputTag {
 public:
  /// A prototype in the schema of `master`.
  InputTag(InputBlock& master, TagFacts& facts) : facts_(&facts), block_(&master) {}
  /// An instance of `master` in `actualParent`.
  InputTag(const InputTag& master, InputBlock& actualParent)
      : facts_(master.facts_), block_(&actualParent), isInstance_(true) {}

  InputTag(const InputTag&) = delete;
  InputTag& operator=(const InputTag&) = delete;
  virtual ~InputTag();

  virtual void accept(InputTagVisitor& visitor) const = 0;

  [[nodiscard]] std::string_view getName() const { return facts_->name; }

  /// Whether the tag must be given; `block` is the instance that is asked about, if there is one.
  [[nodiscard]] virtual bool isMandatory(const InputBlock* block = nullptr) const;
  /// The flag of the schema, whatever the conditions say.
  [[nodiscard]] bool isMandatoryBySchema() const { return facts_->mandatory; }
  [[nodiscard]] bool isRepeatable() const { return facts_->repeatable; }
  [[nodiscard]] bool isRestricted() const { return !facts_->restrictedValues.empty(); }
  [[nodiscard]] std::size_t getNumRestrictedValues() const {
    return facts_->restrictedValues.size();
  }
  /// The allowed value at `index`; an index beyond them is an assertion.
  [[nodiscard]] const std::string& getRestrictedValue(std::size_t index) const;
  [[nodiscard]] const std::string& getDefaultValue() const { return facts_->defaultValue; }
  [[nodiscard]] const std::string& getPresetValue() const { return facts_->presetValue; }
  [[nodiscard]] std::string_view getDescription() const { return facts_->description; }
  /// Place of the tag among those of its block class.
  [[nodiscard]] std::uint32_t getPosition() const { return facts_->position; }

  /// Whether population leaves the tag of `block` out.
  [[nodiscard]] virtual bool isSuppressed(const InputBlock& block) const;

  /// The kind in the words of the user, such as "real".
  [[nodiscard]] virtual std::string getTypeName() const;
  /// What the value must satisfy, conditions included.
  [[nodiscard]] virtual std::string getConstraintDescription() const;
  /// On what the use of the tag depends; empty for an unconditional tag.
  [[nodiscard]] virtual std::string getConditionDescription() const;
  [[nodiscard]] virtual std::string getUnit() const;

  /// Takes the value as it stands in the file, checks it and writes it to the bound variable.
  /// Throws an `InputParseError` of kind `tagValue` that tells all faults when it is refused.
  void setRawValue(std::string_view text);

  /// Checks the value anew; the errors and warnings are those of this check. True when it is valid.
  bool validate();
  /// What the conditions around this prototype say of `instance`, whose value is valid by itself:
  /// they add their errors and warnings to it. True when it stays valid.
  virtual bool admits(InputTag& instance) const;

  [[nodiscard]] const std::vector<std::string>& getErrors() const { return messages().errors; }
  [[nodiscard]] const std::vector<std::string>& getWarnings() const { return messages().warnings; }
  void addError(std::string text);
  void addWarning(std::string text);

  /// An instance of this prototype for `actualParent`. An assertion on an instance.
  [[nodiscard]] virtual std::unique_ptr<InputTag> logicalClone(InputBlock& actualParent) const = 0;

  /// The block that holds the tag: an instance for an instance, a master for a prototype.
  [[nodiscard]] InputBlock* getActualParent() const { return block_; }
  /// Place among the tags of the block that holds it, which is searched for it.
  [[nodiscard]] std::size_t getIndex() const;

  /// Writes the preset to the bound variable.
  virtual void assignPreset();

  /// The value as it stands in the file, without blanks at its ends. It lasts as long as the tree.
  [[nodiscard]] std::string_view getRawText() const { return {rawText_, rawSize_}; }
  /// The same as a text of its own.
  [[nodiscard]] std::string getRawValue() const { return std::string(getRawText()); }

  /// The bound variable of a real number; an assertion for any other kind.
  [[nodiscard]] virtual double asDouble() const;
  /// The bound variable of an integer; an assertion for any other kind.
  [[nodiscard]] virtual int asInt() const;

  /// Writes the checked value to the bound variable.
  virtual void commit();

  /// The prototype of an instance; null for a prototype.
  [[nodiscard]] const InputTag* getLogicalMaster() const {
    return isInstance_ ? facts_->prototype : nullptr;
  }

  /// Resolves what the tag says of its siblings, once all tags of the block class are declared.
  virtual void link();

 protected:
  /// The check of a kind on a raw value that is no disallowed word.
  virtual bool check();
  /// Whether a passed check needs no repetition as long as the value is the same.
  [[nodiscard]] virtual bool passesForGood() const;
  /// Whether the value is one of the restricted values, where there are any.
  virtual bool isAllowedWord();
  [[nodiscard]] bool repeatable() const { return isRepeatable(); }

  TagFacts* facts_;

 private:
  [[nodiscard]] const TagMessages& messages() const;
  /// The restricted value that is `text`; null when there is none.
  [[nodiscard]] const std::string* restrictedWord(std::string_view text) const;
  /// The messages to add to.
  TagMessages& ownMessages();

  // A large setup has millions of tags, so they hold nothing that their facts or their block can
  // tell, and what is known of the value shares a word with its length.
  static constexpr unsigned sizeBits = 61;
  static constexpr std::size_t maxSize = (std::size_t{1} << sizeBits) - 1;

  InputBlock* block_;
  const char* rawText_ = "";
  std::size_t rawSize_ : sizeBits = 0;
  bool isInstance_ : 1 = false;
  bool passed_ : 1 = false;
  bool hasMessages_ : 1 = false;
};

/// Gives the tag kind `Self` its `accept` and its `logicalClone`.
template <class Self, class Base = InputTag>
class TagKind : public Base {
 public:
  using Base::Base;
  void accept(InputTagVisitor& visitor) const override;
  [[nodiscard]] std::unique_ptr<InputTag> logicalClone(InputBlock& actualParent) const override;
};

}  // namespace KESTparse
