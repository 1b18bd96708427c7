/// \file
/// Tags whose meaning depends on other tags of their block. Each wraps a tag of any kind.
#pragma once

#include "KESTparse/framework/InputTag.h"

namespace KESTparse {

/// A rule on the value of a sibling.
struct Condition {
  std::string_view tag;             ///< name of the sibling
  std::vector<std::string> values;  ///< at least one
  bool equals = true;               ///< false: the rule holds for a value that differs
  int sibling = -1;                 ///< place of the sibling in the schema; -1 when there is none

  /// The sibling in the instance `block`; null when it was not given.
  [[nodiscard]] const InputTag* findSibling(const InputBlock& block) const;
  /// Whether the value of `sibling` satisfies the rule for at least one of the values.
  [[nodiscard]] bool isMet(const InputTag& siblingTag) const;
};

/// Forwards everything to the tag within.
class InputTagComposite : public InputTag {
 public:
  /// The tag within.
  [[nodiscard]] const InputTag& getComposite() const { return *composite; }

  [[nodiscard]] bool isMandatory(const InputBlock* block = nullptr) const override;
  [[nodiscard]] bool isSuppressed(const InputBlock& block) const override;
  [[nodiscard]] std::string getTypeName() const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  [[nodiscard]] std::string getConditionDescription() const override;
  [[nodiscard]] std::string getUnit() const override;
  bool validate() override;
  [[nodiscard]] const std::vector<std::string>& getErrors() const override;
  [[nodiscard]] const std::vector<std::string>& getWarnings() const override;
  void addError(std::string text) override;
  void addWarning(std::string text) override;
  void assignPreset() override;
  [[nodiscard]] const std::string& getRawValue() const override;
  [[nodiscard]] double asDouble() const override;
  [[nodiscard]] int asInt() const override;
  void commit() override;
  void link() override;

 protected:
  InputTagComposite(InputBlock& master, TagFacts& facts, std::unique_ptr<InputTag> inner)
      : InputTag(master, facts), composite(std::move(inner)) {}
  InputTagComposite(const InputTagComposite& master, InputBlock& actualParent)
      : InputTag(master, actualParent), composite(master.composite->logicalClone(actualParent)) {}
  void storeRawValue(std::string_view text) override;

  std::unique_ptr<InputTag> composite;
};

/// A tag that means something only for certain values of a sibling; a value given otherwise draws a
/// warning.
class InputTagCondUsedIf : public InputTagComposite {
 public:
  /// Wraps the prototype `inner`; a repeatable one is an assertion. `condition` is kept by the
  /// schema of `master`.
  InputTagCondUsedIf(InputBlock& master, TagFacts& facts, std::unique_ptr<InputTag> inner,
                     Condition& condition);
  InputTagCondUsedIf(const InputTagCondUsedIf& master, InputBlock& actualParent)
      : InputTagComposite(master, actualParent), condition_(master.condition_) {}

  void accept(InputTagVisitor& visitor) const override;
  [[nodiscard]] bool isSuppressed(const InputBlock& block) const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  [[nodiscard]] std::string getConditionDescription() const override;
  bool validate() override;
  /// A tag that is required for certain values is cloned into one that is used for them: whether
  /// something is missing is asked of the prototypes.
  [[nodiscard]] std::unique_ptr<InputTag> logicalClone(InputBlock& actualParent) const override;
  void link() override;

  [[nodiscard]] const Condition& getCondition() const { return *condition_; }

 private:
  Condition* condition_;
};

/// In addition, a mandatory tag within is required for those values of the sibling, and only then.
class InputTagCondRequiredIf : public InputTagCondUsedIf {
 public:
  using InputTagCondUsedIf::InputTagCondUsedIf;
  void accept(InputTagVisitor& visitor) const override;
  [[nodiscard]] bool isMandatory(const InputBlock* block = nullptr) const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  [[nodiscard]] std::string getConditionDescription() const override;
};

/// A tag that must not be given together with a named sibling.
class InputTagCondExclusive : public InputTagComposite {
 public:
  InputTagCondExclusive(InputBlock& master, TagFacts& facts, std::unique_ptr<InputTag> inner,
                        Condition& other)
      : InputTagComposite(master, facts, std::move(inner)), other_(&other) {}
  InputTagCondExclusive(const InputTagCondExclusive& master, InputBlock& actualParent)
      : InputTagComposite(master, actualParent), other_(master.other_) {}

  void accept(InputTagVisitor& visitor) const override;
  [[nodiscard]] bool isMandatory(const InputBlock* block = nullptr) const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  [[nodiscard]] std::string getConditionDescription() const override;
  bool validate() override;
  [[nodiscard]] std::unique_ptr<InputTag> logicalClone(InputBlock& actualParent) const override;
  void link() override;

  /// Name of the sibling.
  [[nodiscard]] std::string_view getOtherTag() const { return other_->tag; }

 private:
  Condition* other_;
};

}  // namespace KESTparse
