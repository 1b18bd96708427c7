/// \file
/// Tags that hold a word for a value of an enumeration.
#pragma once

#include <algorithm>

#include "KESTparse/base/Assert.h"
#include "KESTparse/framework/InputTagKind.h"

namespace KESTparse {

/// A word that stands for a value of an enumeration.
class InputTagEnumBase : public TagKind<InputTagEnumBase> {
 public:
  static constexpr bool mayRepeat = true;
  using TagKind::TagKind;
  [[nodiscard]] std::string getTypeName() const override;
};

/// What the schema says of a word for a value of the enumeration `T`. The words are the restricted
/// values of the tag, in byte order.
template <typename T>
struct EnumFacts : TagFacts {
  T InputBlock::*member = nullptr;  ///< the bound variable
  std::vector<T> values;            ///< parallel to the restricted values
};

/// A word for a value of the enumeration `T`.
template <typename T>
class InputTagEnum : public TagKind<InputTagEnum<T>, InputTagEnumBase> {
 public:
  using Facts = EnumFacts<T>;
  using TagKind<InputTagEnum<T>, InputTagEnumBase>::TagKind;
  void commit() override {
    T InputBlock::*const member = static_cast<const Facts&>(*this->facts_).member;
    T* const result_ = member == nullptr ? nullptr : &(this->getActualParent()->*member);
    ASSERT(result_ != nullptr, "");
    const std::vector<std::string>& names = this->facts_->restrictedValues;
    const auto it = std::find(names.begin(), names.end(), this->getRawText());
    ASSERT(it != names.end(), "it != valueMap_.end()");
    *result_ = static_cast<const Facts&>(*this->facts_)
                   .values[static_cast<std::size_t>(it - names.begin())];
  }
};

}  // namespace KESTparse
