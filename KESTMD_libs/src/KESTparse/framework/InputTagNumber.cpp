#include "KESTparse/framework/InputTagNumber.h"

#include <type_traits>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagKind.h"

namespace KESTparse {

template <typename T>
std::string Range<T>::describe() const {
  const auto sign = [](bool inclusive) { return inclusive ? "&lt;= " : "&lt; "; };
  const auto text = [](T bound) { return doubleToString(static_cast<double>(bound)); };
  if (hasLower && hasUpper) {
    return text(lower) + " " + sign(lowerInclusive) + "x " + sign(upperInclusive) + text(upper);
  }
  if (hasLower) {
    return (lowerInclusive ? "x &gt;= " : "x &gt; ") + text(lower);
  }
  return hasUpper ? std::string("x ") + sign(upperInclusive) + text(upper) : std::string();
}

template <typename T>
std::string InputTagNumber<T>::getTypeName() const {
  return std::is_same_v<T, int> ? "integer" : "real";
}

template <typename T>
std::string InputTagNumber<T>::getConstraintDescription() const {
  return facts().hardRange.describe();
}

template <typename T>
std::string InputTagNumber<T>::getUnit() const {
  return std::string(facts().unit);
}

template <typename T>
bool InputTagNumber<T>::check() {
  const std::string_view raw = this->getRawText();
  std::string fault = std::is_same_v<T, int> ? integerSyntaxFault(raw) : realSyntaxFault(raw);
  if (!fault.empty()) {
    this->addError(std::move(fault));
    return false;
  }
  const T value = fromText<T>(raw);
  if (!facts().hardRange.contains(value)) {
    this->addError("Value '" + this->getRawValue() + "' is not in range " +
                   facts().hardRange.describe());
    return false;
  }
  if (!facts().reasonableRange.contains(value)) {
    // The range shown is the hard one; users know the warning so.
    this->addWarning("Value '" + this->getRawValue() + "' is not in the reasonable range " +
                     facts().hardRange.describe());
  }
  return true;
}

template <typename T>
bool InputTagNumber<T>::passesForGood() const {
  // A warning has to be told by each check.
  return !facts().reasonableRange.restricts();
}

template <typename T>
T* InputTagNumber<T>::target() const {
  if (facts().global != nullptr) {
    return &(GlobalValues::instance().*facts().global);
  }
  return facts().member == nullptr ? nullptr : &(this->getActualParent()->*facts().member);
}

template <typename T>
void InputTagNumber<T>::assignPreset() {
  T* const result_ = target();
  // A value of the process is not the block's to reset.
  if (result_ == nullptr || facts().global != nullptr) {
    return;
  }
  const std::string& preset = facts().presetValue;
  *result_ = preset.empty() ? T{} : fromText<T>(preset);
}

template <typename T>
double InputTagNumber<T>::asDouble() const {
  if constexpr (std::is_same_v<T, double>) {
    return *target();
  } else {
    ASSERT(false, "You must not call this function on an integer object.");
  }
}

template <typename T>
int InputTagNumber<T>::asInt() const {
  if constexpr (std::is_same_v<T, int>) {
    return *target();
  } else {
    ASSERT(false, "You must not call this function on a double object.");
  }
}

template <typename T>
void InputTagNumber<T>::commit() {
  T* const result_ = target();
  ASSERT(result_ != nullptr, "");
  *result_ = fromText<T>(this->getRawText());
}

void InputTagSlope::commit() {
  InputTagNumber<double>::commit();
  *target() /= 1000.0;
}

template struct Range<int>;
template struct Range<double>;
template class TagKind<InputTagNumber<int>>;
template class TagKind<InputTagNumber<double>>;
template class TagKind<InputTagSlope, InputTagNumber<double>>;
template class InputTagNumber<int>;
template class InputTagNumber<double>;

}  // namespace KESTparse
