/// \file
/// The rows in which a block class declares its tags.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagList.h"
#include "KESTparse/framework/InputTagNumber.h"
#include "KESTparse/framework/InputTagString.h"

namespace KESTparse {

/// The words of a condition or a restriction.
using Words = std::initializer_list<const char*>;

/// What the rows of all kinds share; `TagRow` adds the attributes.
class TagRowBase {
 protected:
  TagRowBase(InputBlock& block, InputTag& tag) : block_(&block), position_(tag.getPosition()) {}
  enum class ConditionKind { usedIf, requiredIf, exclusive };
  /// Wraps the tag in a condition.
  void wrap(ConditionKind kind, std::string_view sibling, Words values, bool equals);
  static std::vector<std::string> toStrings(Words words);

 private:
  InputBlock* block_;
  std::size_t position_;
};

/// One row of the table of tags. Its order is: flags, default and preset, unit, range or words,
/// condition.
template <class Facts>
class TagRow : private TagRowBase {
  static constexpr bool isNumber = requires(Facts facts) { facts.hardRange; };
  static constexpr bool isList = requires(Facts facts) { facts.parser; };

 public:
  TagRow(InputBlock& block, InputTag& tag, Facts& facts) : TagRowBase(block, tag), facts_(&facts) {}

  /// The tag must be given.
  TagRow& mandatory() {
    facts_->mandatory = true;
    return *this;
  }
  /// The tag may be given more than once.
  TagRow& repeatable() {
    facts_->repeatable = true;
    return *this;
  }
  /// The value of a tag that the file leaves out, as it would stand in the file.
  TagRow& defaultsTo(std::string_view value) {
    facts_->defaultValue = value;
    return *this;
  }
  /// What the variable holds as long as no value is set; it never reaches the document by itself.
  TagRow& preset(std::string_view value) {
    facts_->presetValue = value;
    return *this;
  }
  TagRow& unit(std::string_view text) {
    facts_->unit = text;
    return *this;
  }
  /// The value must be one of `words`.
  TagRow& oneOf(Words words) {
    facts_->restrictedValues = toStrings(words);
    return *this;
  }

  /// value >= bound
  TagRow& atLeast(double bound) requires isNumber { return from(bound, true); }
  /// value > bound
  TagRow& above(double bound) requires isNumber { return from(bound, false); }
  /// value <= bound
  TagRow& atMost(double bound) requires isNumber { return to(bound, true); }
  /// value < bound
  TagRow& below(double bound) requires isNumber { return to(bound, false); }
  /// A value outside `range` draws a warning.
  template <typename T>
  TagRow& reasonable(const Range<T>& range) requires isNumber {
    facts_->reasonableRange = range;
    return *this;
  }

  /// A rule of the block may take a value that was given back.
  TagRow& mayReturnToPreset() requires isNumber {
    facts_->returnsToPreset = true;
    return *this;
  }

  /// The list holds exactly `count` items, or at most -`count` for a negative one.
  TagRow& items(int count) requires isList {
    facts_->parser = makeParser(*facts_, count);
    return *this;
  }
  /// Heads the description of what the list must satisfy.
  TagRow& constraint(std::string_view text) requires isList {
    facts_->constraint = text;
    return *this;
  }
  /// Each item must be one of `entries`.
  TagRow& validEntries(Words entries) requires isList {
    facts_->validEntries = toStrings(entries);
    return *this;
  }
  TagRow& validEntries(const std::vector<std::string>& entries) requires isList {
    facts_->validEntries = entries;
    return *this;
  }

  /// The filter that file dialogs of other tools show.
  TagRow& filter(std::string_view text) requires std::is_same_v<Facts, StringFacts> {
    facts_->fileFilter = text;
    return *this;
  }

  /// The tag has a meaning only when `sibling` has one of `values`.
  TagRow& usedIf(std::string_view sibling, Words values) {
    wrap(ConditionKind::usedIf, sibling, values, true);
    return *this;
  }
  /// The tag has a meaning only when `sibling` differs from one of `values`.
  TagRow& usedIfNot(std::string_view sibling, Words values) {
    wrap(ConditionKind::usedIf, sibling, values, false);
    return *this;
  }
  /// As `usedIf`, and a mandatory tag is required only then.
  TagRow& requiredIf(std::string_view sibling, Words values) {
    wrap(ConditionKind::requiredIf, sibling, values, true);
    return *this;
  }
  /// As `usedIfNot`, and a mandatory tag is required only then.
  TagRow& requiredIfNot(std::string_view sibling, Words values) {
    wrap(ConditionKind::requiredIf, sibling, values, false);
    return *this;
  }
  /// The tag must not be given together with `sibling`. Stands last.
  TagRow& exclusiveWith(std::string_view sibling) {
    wrap(ConditionKind::exclusive, sibling, {}, true);
    return *this;
  }

 private:
  template <typename T>
  static std::unique_ptr<ListParser> makeParser(const ListFacts<T>& /*facts*/, int count) {
    return std::make_unique<WhiteSpaceListParser<T>>(count);
  }
  TagRow& from(double bound, bool inclusive) {
    auto& range = facts_->hardRange;
    range.hasLower = true;
    range.lowerInclusive = inclusive;
    range.lower = static_cast<decltype(range.lower)>(bound);
    return *this;
  }
  TagRow& to(double bound, bool inclusive) {
    auto& range = facts_->hardRange;
    range.hasUpper = true;
    range.upperInclusive = inclusive;
    range.upper = static_cast<decltype(range.upper)>(bound);
    return *this;
  }

  Facts* facts_;
};

/// Adds a tag of the kind `Tag` to the schema of `block` and returns its row.
template <class Tag>
TagRow<typename Tag::Facts> makeTagRow(InputBlock& block,
                                       std::unique_ptr<typename Tag::Facts> facts,
                                       std::string_view member, std::string_view name,
                                       std::string_view help) {
  typename Tag::Facts& told = *facts;
  told.name = name;
  told.memberName = member;
  told.description = help;
  auto tag = std::make_unique<Tag>(block, told);
  return {block, block.addLogicalTag(std::move(facts), std::move(tag)), told};
}

}  // namespace KESTparse
