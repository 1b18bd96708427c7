#include "KESTparse/framework/InputTagString.h"

#include "KESTcore/StandardSerie.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagEnum.h"
#include "KESTparse/framework/InputTagKind.h"

namespace KESTparse {
bool InputTagValidatorOneWord::isValid(std::string_view text) const {
  for (const char c : text) {
    const bool allowed = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         (c >= '0' && c <= '9') || c == '_' || c == '-';
    if (!allowed) {
      return false;
    }
  }
  return !text.empty();
}

std::string InputTagValidatorOneWord::describe() const {
  return "Chars [a-zA-Z0-9_-] are allowed";
}

std::unique_ptr<InputTagStringValidator> InputTagValidatorOneWord::clone() const {
  return std::make_unique<InputTagValidatorOneWord>();
}

std::string InputTagString::getTypeName() const {
  return "string";
}

std::string InputTagString::getConstraintDescription() const {
  return facts().validator == nullptr ? std::string() : facts().validator->describe();
}

bool InputTagString::check() {
  const InputTagStringValidator* const validator = facts().validator.get();
  if (validator != nullptr && !validator->isValid(getRawText())) {
    addError("The string does not meet the restriction: " + validator->describe());
    return false;
  }
  return true;
}

std::string* InputTagString::target() {
  return facts().member == nullptr ? nullptr : &(getActualParent()->*facts().member);
}

void InputTagString::assignPreset() {
  if (std::string* const result_ = target(); result_ != nullptr) {
    *result_ = getPresetValue();
  }
}

void InputTagString::commit() {
  std::string* const result_ = target();
  ASSERT(result_ != nullptr, "");
  *result_ = getRawText();
}

bool InputTagPosition::check() {
  if (!InputTagString::check()) {
    return false;
  }
  const std::string raw = getRawValue();
  const std::size_t dot = raw.find('.');
  if (raw.empty() || dot == 0) {
    addError("Position starts with a '.' which means that no region name is defined");
    return false;
  }
  if (dot == std::string::npos) {
    addError("There is no region name in string '" + raw + "'");
    return false;
  }
  if (raw.find('.', dot + 1) != std::string::npos) {
    addError("Found a second dot in '" + raw + "' which is unexpected");
    return false;
  }
  return true;
}

void InputTagPosition::assignPreset() {
  if (facts().member != nullptr && facts().regionMember != nullptr) {
    (getActualParent()->*facts().member).clear();
    (getActualParent()->*facts().regionMember).clear();
  }
}

void InputTagPosition::commit() {
  const std::string_view val = getRawText();
  const std::size_t idx = val.find('.');
  ASSERT(idx < val.size(), "");
  ASSERT(facts().member != nullptr && facts().regionMember != nullptr,
         "position_ != nullptr && position_region_ != nullptr");
  getActualParent()->*facts().member = val.substr(idx + 1);
  getActualParent()->*facts().regionMember = val.substr(0, idx);
}

std::string InputTagSeriesFile::path() const {
  return GlobalValues::instance().resolveRelativePaths ? resolvePath(getRawText())
                                                       : std::string(getRawText());
}

const Kestrix::Table& InputTagSeriesFile::rows() const {
  return getActualParent()->*facts().table;
}

bool InputTagSeriesFile::check() {
  if (!InputTagFile::check()) {
    return false;
  }
  if (getRawText().empty()) {
    addError("Empty filename received");
    return false;
  }
  const std::string opened = path();
  if (!canOpen(opened)) {
    addError("Can not open file '" + opened + "'");
    return false;
  }
  return true;
}

void InputTagSeriesFile::commit() {
  InputTagFile::commit();
  const std::string opened = path();
  Kestrix::Table& table = getActualParent()->*facts().table;
  GlobalValues& values = GlobalValues::instance();
  if (!values.keepsSeries) {
    Kestrix::StandardSerie(opened).copyTo(table);
    return;
  }
  std::shared_ptr<const Kestrix::Table>& kept = values.readFiles.series[opened];
  if (kept == nullptr) {
    Kestrix::StandardSerie(opened).copyTo(table);
    kept = std::make_shared<const Kestrix::Table>(table);
  } else {
    table = *kept;
  }
}

void InputTagSeriesFile::assignPreset() {
  // A preset name stands for "no file"; the variable is compared with it, so it is not emptied.
  InputTagFile::assignPreset();
  if (facts().table != nullptr) {
    (getActualParent()->*facts().table).clear();
  }
}

std::string InputTagBoolean::getTypeName() const {
  return "boolean";
}

bool* InputTagBoolean::target() const {
  bool InputBlock::*const member = static_cast<const Facts&>(*facts_).member;
  return member == nullptr ? nullptr : &(getActualParent()->*member);
}

void InputTagBoolean::assignPreset() {
  if (bool* const result_ = target(); result_ != nullptr) {
    *result_ = stringToBool(getPresetValue());
  }
}

void InputTagBoolean::commit() {
  bool* const result_ = target();
  ASSERT(result_ != nullptr, "");
  const std::string_view raw = getRawText();
  const bool isTrue = raw == "1" || raw == "yes";
  ASSERT(isTrue || raw == "0" || raw == "no",
         "tried to parse invalid boolean value '" << raw << "'. I don't like.");
  *result_ = isTrue;
}

std::string InputTagEnumBase::getTypeName() const {
  return "enum";
}

template class TagKind<InputTagString>;
template class TagKind<InputTagStringStd, InputTagString>;
template class TagKind<InputTagPosition, InputTagStringStd>;
template class TagKind<InputTagFile, InputTagString>;
template class TagKind<InputTagSeriesFile, InputTagFile>;
template class TagKind<InputTagBoolean>;
template class TagKind<InputTagEnumBase>;

}  // namespace KESTparse
