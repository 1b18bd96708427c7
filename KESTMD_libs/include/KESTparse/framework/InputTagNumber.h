/// \file
/// Tags that hold one number.
#pragma once

#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/Range.h"

namespace KESTparse {

/// What the schema says of a number.
template <typename T>
struct NumberFacts : TagFacts {
  T InputBlock::*member = nullptr;    ///< the bound variable of the block, or
  T GlobalValues::*global = nullptr;  ///< the bound value of the process
  Range<T> hardRange;                 ///< a value outside is an error
  Range<T> reasonableRange;           ///< a value outside is a warning
  bool returnsToPreset = false;       ///< a rule may take a value back
};

/// A real number (`double`) or an integer (`int`).
template <typename T>
class InputTagNumber : public TagKind<InputTagNumber<T>> {
 public:
  using Facts = NumberFacts<T>;
  static constexpr bool mayRepeat = false;
  using TagKind<InputTagNumber<T>>::TagKind;

  [[nodiscard]] std::string getTypeName() const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  [[nodiscard]] std::string getUnit() const override;
  void assignPreset() override;
  [[nodiscard]] double asDouble() const override;
  [[nodiscard]] int asInt() const override;
  void commit() override;

  /// The interval that the value must lie in.
  [[nodiscard]] const Range<T>& getHardRange() const { return facts().hardRange; }
  /// Whether the variable of a tag that was given may hold the preset in the end.
  [[nodiscard]] bool mayReturnToPreset() const { return facts().returnsToPreset; }

 protected:
  bool check() override;
  [[nodiscard]] bool passesForGood() const override;
  [[nodiscard]] const Facts& facts() const { return static_cast<const Facts&>(*this->facts_); }
  /// The bound variable; null for a tag that is bound to nothing.
  [[nodiscard]] T* target() const;
};

/// A slope, given in per mill and kept as a fraction.
class InputTagSlope : public TagKind<InputTagSlope, InputTagNumber<double>> {
 public:
  using TagKind::TagKind;
  void commit() override;
};

}  // namespace KESTparse
