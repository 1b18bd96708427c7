#include "KESTparse/framework/InputTagConditions.h"

#include <fmt/core.h>

#include <algorithm>

#include "KESTparse/base/Assert.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagVisitor.h"

namespace KESTparse {
namespace {

/// The sibling, a sign and the values, with `behindFirst` behind the first of them and
/// `behindFurther` behind each other.
std::string conditionText(const Condition& condition, const char* sign, const char* behindFirst,
                          const char* behindFurther) {
  std::string text =
      fmt::format("'{}' {} '{}'{}", condition.tag, sign, condition.values.front(), behindFirst);
  for (std::size_t i = 1; i < condition.values.size(); ++i) {
    text += fmt::format(" or '{}'{}", condition.values[i], behindFurther);
  }
  return text;
}

/// `inner` and `rule`, with `joint` between them where there is something to join.
std::string joined(const std::string& inner, const char* joint, const std::string& rule) {
  return inner.empty() ? rule : inner + joint + rule;
}

}  // namespace

const InputTag* Condition::findSibling(const InputBlock& block) const {
  return sibling < 0 ? nullptr : block.findTag(static_cast<std::size_t>(sibling));
}

bool Condition::isMet(const InputTag& siblingTag) const {
  return isMet(siblingTag.getRawText());
}

bool Condition::isMet(std::string_view raw) const {
  return std::any_of(values.begin(), values.end(),
                     [this, raw](const std::string& value) { return (raw == value) == equals; });
}

bool InputTagComposite::isMandatory(const InputBlock* block) const {
  return composite->isMandatory(block);
}

bool InputTagComposite::isSuppressed(const InputBlock& block) const {
  return composite->isSuppressed(block);
}

std::string InputTagComposite::getTypeName() const {
  return composite->getTypeName();
}

std::string InputTagComposite::getConstraintDescription() const {
  return composite->getConstraintDescription();
}

std::string InputTagComposite::getConditionDescription() const {
  return composite->getConditionDescription();
}

std::string InputTagComposite::getUnit() const {
  return composite->getUnit();
}

bool InputTagComposite::admits(InputTag& instance) const {
  return composite->admits(instance);
}

std::unique_ptr<InputTag> InputTagComposite::logicalClone(InputBlock& actualParent) const {
  return composite->logicalClone(actualParent);
}

void InputTagComposite::assignPreset() {
  composite->assignPreset();
}

void InputTagComposite::link() {
  composite->link();
}

InputTagCondUsedIf::InputTagCondUsedIf(InputBlock& master, TagFacts& facts,
                                       std::unique_ptr<InputTag> inner, Condition& condition)
    : InputTagComposite(master, facts, std::move(inner)), condition_(&condition) {
  ASSERT(!composite->isRepeatable(), "!composite->repeatable()");
}

void InputTagCondUsedIf::accept(InputTagVisitor& visitor) const {
  visitor.visit(*this);
}

void InputTagCondUsedIf::link() {
  InputTagComposite::link();
  condition_->sibling = getActualParent()->getLogicalTagPosition(condition_->tag);
}

bool InputTagCondUsedIf::isSuppressed(const InputBlock& block) const {
  const InputTag* const sibling = condition_->findSibling(block);
  return sibling == nullptr || !condition_->isMet(*sibling);
}

bool InputTagCondUsedIf::admits(InputTag& instance) const {
  if (!composite->admits(instance)) {
    return false;
  }
  const InputTag* const sibling = condition_->findSibling(*instance.getActualParent());
  if (sibling != nullptr && !condition_->isMet(*sibling)) {
    instance.addWarning(
        fmt::format("The value for tag '{}' will not be used as tag {}", getName(),
                    conditionText(*condition_, condition_->equals ? "!=" : "==", "", " ")));
  }
  return true;
}

std::string InputTagCondUsedIf::getConditionDescription() const {
  return "used if " + conditionText(*condition_, condition_->equals ? "=" : "!=", " ", " ");
}

std::string InputTagCondUsedIf::getConstraintDescription() const {
  return joined(composite->getConstraintDescription(), "; ",
                InputTagCondUsedIf::getConditionDescription());
}

void InputTagCondRequiredIf::accept(InputTagVisitor& visitor) const {
  visitor.visit(*this);
}

bool InputTagCondRequiredIf::isMandatory(const InputBlock* block) const {
  if (block == nullptr) {
    return true;
  }
  const InputTag* const sibling = getCondition().findSibling(*block);
  return sibling != nullptr && getCondition().isMet(*sibling) && composite->isMandatory(block);
}

std::string InputTagCondRequiredIf::getConditionDescription() const {
  return "required if " + conditionText(getCondition(), getCondition().equals ? "=" : "!=", "", "");
}

std::string InputTagCondRequiredIf::getConstraintDescription() const {
  return joined(composite->getConstraintDescription(), "; and ", getConditionDescription());
}

void InputTagCondExclusive::accept(InputTagVisitor& visitor) const {
  visitor.visit(*this);
}

void InputTagCondExclusive::link() {
  InputTagComposite::link();
  other_->sibling = getActualParent()->getLogicalTagPosition(other_->tag);
}

bool InputTagCondExclusive::isMandatory(const InputBlock* block) const {
  if (block != nullptr && other_->findSibling(*block) != nullptr) {
    return false;
  }
  return composite->isMandatory(block);
}

bool InputTagCondExclusive::admits(InputTag& instance) const {
  if (!composite->admits(instance)) {
    return false;
  }
  const InputBlock* const parent = instance.getActualParent();
  ASSERT(parent != nullptr, "getActualParent() != nullptr");
  if (other_->findSibling(*parent) == nullptr) {
    return true;
  }
  instance.addError(fmt::format("Tag '{}' and tag '{}' are exclusive.", getName(), other_->tag));
  return false;
}

std::string InputTagCondExclusive::getConditionDescription() const {
  return joined(composite->getConditionDescription(), "; ",
                fmt::format("exclusive: '{}'", other_->tag));
}

std::string InputTagCondExclusive::getConstraintDescription() const {
  return joined(composite->getConstraintDescription(), "; ",
                fmt::format("exclusive: '{}'", other_->tag));
}

}  // namespace KESTparse
