/// \file
/// Tags that hold one word or text.
#pragma once

#include "KESTcore/Table.h"
#include "KESTparse/framework/InputTag.h"

namespace KESTparse {

/// A rule for texts.
class InputTagStringValidator {
 public:
  virtual ~InputTagStringValidator() = default;
  [[nodiscard]] virtual bool isValid(std::string_view text) const = 0;
  /// The rule in words.
  [[nodiscard]] virtual std::string describe() const = 0;
  /// The rule as a regular expression on the whole text.
  [[nodiscard]] virtual std::string pattern() const = 0;
  [[nodiscard]] virtual std::unique_ptr<InputTagStringValidator> clone() const = 0;
};

/// Letters, digits, `_` and `-`, at least one.
class InputTagValidatorOneWord : public InputTagStringValidator {
 public:
  [[nodiscard]] bool isValid(std::string_view text) const override;
  [[nodiscard]] std::string describe() const override;
  [[nodiscard]] std::string pattern() const override { return "^[A-Za-z0-9_-]+$"; }
  [[nodiscard]] std::unique_ptr<InputTagStringValidator> clone() const override;
};

/// What the schema says of a text.
struct StringFacts : TagFacts {
  std::string InputBlock::*member = nullptr;           ///< the bound variable
  std::string InputBlock::*regionMember = nullptr;     ///< of a position: its region
  Kestrix::Table InputBlock::*table = nullptr;         ///< of a series: its rows
  std::unique_ptr<InputTagStringValidator> validator;  ///< none for a free text
  std::string_view fileFilter;  ///< of a file: the filter that file dialogs of other tools show
};

/// A text, possibly one of a few.
class InputTagString : public TagKind<InputTagString> {
 public:
  using Facts = StringFacts;
  static constexpr bool mayRepeat = false;
  using TagKind::TagKind;

  [[nodiscard]] std::string getTypeName() const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  void assignPreset() override;
  void commit() override;

  /// The rule for the text; null for a free one.
  [[nodiscard]] const InputTagStringValidator* getValidator() const {
    return facts().validator.get();
  }

 protected:
  bool check() override;
  [[nodiscard]] const Facts& facts() const { return static_cast<const Facts&>(*facts_); }
  /// The bound variable; null for a tag that is bound to nothing.
  [[nodiscard]] std::string* target();
};

/// A text that no variable of the block takes.
class InputTagStringStd : public TagKind<InputTagStringStd, InputTagString> {
 public:
  using TagKind::TagKind;
  void commit() override {}
};

/// A place in another region: the name of the region, a dot, and the place.
class InputTagPosition : public TagKind<InputTagPosition, InputTagStringStd> {
 public:
  using TagKind::TagKind;
  /// The rule for the text as a regular expression.
  static constexpr std::string_view pattern = R"(^[^.]+\.[^.]*$)";
  void assignPreset() override;
  void commit() override;

 protected:
  bool check() override;
};

/// The name of a file. The file itself is not looked at.
class InputTagFile : public TagKind<InputTagFile, InputTagString> {
 public:
  using TagKind::TagKind;
  /// The filter that file dialogs of other tools show.
  [[nodiscard]] std::string_view getFileFilter() const { return facts().fileFilter; }
};

/// The name of a time series. Setting the value reads the file into the bound table.
class InputTagSeriesFile : public TagKind<InputTagSeriesFile, InputTagFile> {
 public:
  static constexpr bool mayRepeat = true;
  using TagKind::TagKind;
  /// The path under which the series is opened.
  [[nodiscard]] std::string path() const;
  /// The rows in the bound table: those of the last instance where the tag stands repeatedly.
  [[nodiscard]] const Kestrix::Table& rows() const;
  void assignPreset() override;
  void commit() override;

 protected:
  bool check() override;
  /// The file may vanish between two checks.
  [[nodiscard]] bool passesForGood() const override { return false; }
};

/// What the schema says of a yes or no.
struct BooleanFacts : TagFacts {
  bool InputBlock::*member = nullptr;  ///< the bound variable
};

/// "yes" or "no".
class InputTagBoolean : public TagKind<InputTagBoolean> {
 public:
  using Facts = BooleanFacts;
  static constexpr bool mayRepeat = true;
  using TagKind::TagKind;

  [[nodiscard]] std::string getTypeName() const override;
  void assignPreset() override;
  void commit() override;

 private:
  [[nodiscard]] bool* target() const;
};

}  // namespace KESTparse
