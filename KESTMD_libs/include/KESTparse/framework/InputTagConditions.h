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
  /// The same for the value as it stands in the file.
  [[nodiscard]] bool isMet(std::string_view raw) const;
};

/// A prototype around a prototype, which it shows in all but its rule. An instance is one of the
/// tag within; it asks the prototypes around that tag by `admits`.
class InputTagComposite : public InputTag {
 public:
  InputTagComposite(InputBlock& master, TagFacts& facts, std::unique_ptr<InputTag> inner)
      : InputTag(master, facts), composite(std::move(inner)) {}

  /// The tag within.
  [[nodiscard]] const InputTag& getComposite() const { return *composite; }

  [[nodiscard]] bool isMandatory(const InputBlock* block = nullptr) const override;
  [[nodiscard]] bool isSuppressed(const InputBlock& block) const override;
  [[nodiscard]] std::string getTypeName() const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  [[nodiscard]] std::string getConditionDescription() const override;
  [[nodiscard]] std::string getUnit() const override;
  bool admits(InputTag& instance) const override;
  [[nodiscard]] std::unique_ptr<InputTag> logicalClone(InputBlock& actualParent) const override;
  void assignPreset() override;
  void link() override;

 protected:
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

  void accept(InputTagVisitor& visitor) const override;
  [[nodiscard]] bool isSuppressed(const InputBlock& block) const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  [[nodiscard]] std::string getConditionDescription() const override;
  bool admits(InputTag& instance) const override;
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

  void accept(InputTagVisitor& visitor) const override;
  [[nodiscard]] bool isMandatory(const InputBlock* block = nullptr) const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  [[nodiscard]] std::string getConditionDescription() const override;
  bool admits(InputTag& instance) const override;
  void link() override;

  /// Name of the sibling.
  [[nodiscard]] std::string_view getOtherTag() const { return other_->tag; }

 private:
  Condition* other_;
};

}  // namespace KESTparse
