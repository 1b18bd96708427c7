#include "KESTparse/framework/InputTag.h"

#include <algorithm>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/InputTagVisitor.h"

namespace KESTparse {
namespace {

const TagMessages noTagMessages;

}  // namespace

InputTag::~InputTag() = default;

InputTagVisitor::~InputTagVisitor() = default;

void InputTagVisitor::visit(const InputTagCondUsedIf& tag) {
  tag.getComposite().accept(*this);
}

void InputTagVisitor::visit(const InputTagCondRequiredIf& tag) {
  tag.getComposite().accept(*this);
}

void InputTagVisitor::visit(const InputTagCondExclusive& tag) {
  tag.getComposite().accept(*this);
}

void SelectiveTagVisitor::visit(const InputTagNumber<int>& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagNumber<double>& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagSlope& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagBoolean& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagString& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagStringStd& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagFile& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagSeriesFile& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagPosition& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagEnumBase& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagList<int>& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagList<double>& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagList<std::string>& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagSpecialOutputValueList& /*tag*/) {}

void SelectiveTagVisitor::visit(const InputTagTaggedList<double>& /*tag*/) {}

bool InputTag::isMandatory(const InputBlock* /*block*/) const {
  return facts_->mandatory;
}

const std::string& InputTag::getRestrictedValue(std::size_t index) const {
  ASSERT(index < facts_->restrictedValues.size(), "index < this->restrictedValues_.size()");
  return facts_->restrictedValues[index];
}

bool InputTag::isSuppressed(const InputBlock& /*block*/) const {
  return false;
}

std::string InputTag::getTypeName() const {
  return "undef";
}

std::string InputTag::getConstraintDescription() const {
  return {};
}

std::string InputTag::getConditionDescription() const {
  return {};
}

std::string InputTag::getUnit() const {
  return {};
}

void InputTag::setRawValue(std::string_view text) {
  ++GlobalValues::instance().treeChanges;
  const std::string_view value = trim(text);
  const std::string* const word = restrictedWord(value);
  const std::string_view kept = word == nullptr ? block_->keepText(value) : *word;
  rawText_ = kept.data();
  rawSize_ = kept.size() & maxSize;
  passed_ = false;
  if (!validate()) {
    std::string faults;
    for (const std::string& error : getErrors()) {
      faults += (faults.empty() ? "" : "; ") + error;
    }
    if (getErrors().empty()) {
      faults = "An undefined validation error occurred for value '" + getRawValue() + "' of tag '" +
               std::string(getName()) +
               "'. Please contact the development team and send your input file.";
    }
    throw InputParseError(ParseErrorKind::tagValue, std::move(faults));
  }
  commit();
}

const std::string* InputTag::restrictedWord(std::string_view text) const {
  const std::vector<std::string>& words = facts_->restrictedValues;
  const auto it = std::find(words.begin(), words.end(), text);
  return it == words.end() ? nullptr : &*it;
}

bool InputTag::isAllowedWord() {
  if (!isRestricted() || restrictedWord(getRawText()) != nullptr) {
    return true;
  }
  addError(
      (getRawText().empty() ? "Empty value is not allowed for tag '"
                            : "Expression '" + getRawValue() + "' is not a valid value for tag '") +
      std::string(getName()) + "'. Allowed values are " + quotedList(facts_->restrictedValues));
  return false;
}

bool InputTag::check() {
  return true;
}

bool InputTag::passesForGood() const {
  return true;
}

bool InputTag::validate() {
  if (hasMessages_) {
    block_->forgetMessagesOf(*this);
    hasMessages_ = false;
  }
  if (!passed_) {
    if (!isAllowedWord() || !check()) {
      return false;
    }
    passed_ = passesForGood();
  }
  return !isInstance_ || facts_->prototype->admits(*this);
}

bool InputTag::admits(InputTag& /*instance*/) const {
  return true;
}

const TagMessages& InputTag::messages() const {
  return hasMessages_ ? block_->messagesOf(*this) : noTagMessages;
}

std::size_t InputTag::getIndex() const {
  return block_->indexOf(*this);
}

TagMessages& InputTag::ownMessages() {
  hasMessages_ = true;
  return block_->messagesOf(*this);
}

void InputTag::addError(std::string text) {
  ownMessages().errors.push_back(std::move(text));
}

void InputTag::addWarning(std::string text) {
  ownMessages().warnings.push_back(std::move(text));
}

void InputTag::assignPreset() {}

double InputTag::asDouble() const {
  ASSERT(false, "This Tag is not a double value tag!");
}

int InputTag::asInt() const {
  ASSERT(false, "This Tag is not an integer value tag!");
}

void InputTag::commit() {}

void InputTag::link() {}

}  // namespace KESTparse
