#include "KESTparse/vocabulary/TagTraits.h"

#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/InputTagEnum.h"
#include "KESTparse/framework/InputTagList.h"
#include "KESTparse/framework/InputTagNumber.h"
#include "KESTparse/framework/InputTagString.h"
#include "KESTparse/framework/InputTagVisitor.h"

namespace KESTparse {
namespace {

class TraitsOf : public InputTagVisitor {
 public:
  void visit(const InputTagNumber<int>& tag) override { setNumber(tag, ValueKind::integer); }
  void visit(const InputTagNumber<double>& tag) override { setNumber(tag, ValueKind::real); }
  void visit(const InputTagSlope& tag) override { setNumber(tag, ValueKind::real); }
  void visit(const InputTagBoolean& tag) override { set(tag, ValueKind::text); }
  void visit(const InputTagString& tag) override {
    set(tag, ValueKind::text);
    if (tag.getValidator() != nullptr) {
      traits.pattern = tag.getValidator()->pattern();
    }
  }
  void visit(const InputTagStringStd& tag) override { set(tag, ValueKind::text); }
  void visit(const InputTagFile& tag) override { set(tag, ValueKind::file); }
  void visit(const InputTagSeriesFile& tag) override { set(tag, ValueKind::seriesFile); }
  void visit(const InputTagPosition& tag) override {
    set(tag, ValueKind::position);
    traits.pattern = InputTagPosition::pattern;
  }
  void visit(const InputTagEnumBase& tag) override { set(tag, ValueKind::text); }
  void visit(const InputTagList<int>& tag) override { setList(tag, ValueKind::integers); }
  void visit(const InputTagList<double>& tag) override { setList(tag, ValueKind::reals); }
  void visit(const InputTagList<std::string>& tag) override { setList(tag, ValueKind::words); }
  void visit(const InputTagSpecialOutputValueList& tag) override {
    setList(tag, ValueKind::outputValues);
  }
  void visit(const InputTagTaggedList<double>& tag) override {
    set(tag, ValueKind::namedReals);
    traits.constraint = tag.getConstraint();
  }
  void visit(const InputTagCondUsedIf& tag) override {
    add(TagRule::Kind::usedIf, tag.getCondition());
    InputTagVisitor::visit(tag);
  }
  void visit(const InputTagCondRequiredIf& tag) override {
    add(TagRule::Kind::requiredIf, tag.getCondition());
    InputTagVisitor::visit(tag);
  }
  void visit(const InputTagCondExclusive& tag) override {
    traits.rules.push_back({TagRule::Kind::exclusive, nullptr, tag.getOtherTag()});
    InputTagVisitor::visit(tag);
  }

  TagTraits traits;

 private:
  void add(TagRule::Kind kind, const Condition& condition) {
    traits.rules.push_back({kind, &condition, condition.tag});
  }
  void set(const InputTag& tag, ValueKind kind) {
    traits.kind = kind;
    traits.value = &tag;
  }
  template <typename T>
  void setNumber(const InputTagNumber<T>& tag, ValueKind kind) {
    set(tag, kind);
    const Range<T>& range = tag.getHardRange();
    traits.range = {range.hasLower,
                    range.lowerInclusive,
                    range.hasUpper,
                    range.upperInclusive,
                    static_cast<double>(range.lower),
                    static_cast<double>(range.upper)};
    traits.mayReturnToPreset = tag.mayReturnToPreset();
  }
  template <typename T>
  void setList(const InputTagList<T>& tag, ValueKind kind) {
    set(tag, kind);
    traits.itemCount = tag.getItemCount();
    traits.constraint = tag.getConstraint();
    traits.entries = tag.getValidEntries();
  }
};

class ListTest : public SelectiveTagVisitor {
 public:
  explicit ListTest(std::string_view text) : text_(text) {}
  using SelectiveTagVisitor::visit;
  void visit(const InputTagList<int>& tag) override { test(tag); }
  void visit(const InputTagList<double>& tag) override { test(tag); }
  void visit(const InputTagList<std::string>& tag) override { test(tag); }
  void visit(const InputTagSpecialOutputValueList& tag) override { test(tag); }
  void visit(const InputTagTaggedList<double>& tag) override { test(tag); }

  bool isTaken = false;

 private:
  template <class Tag>
  void test(const Tag& tag) {
    isTaken = tag.faultOf(text_).empty();
  }

  std::string_view text_;
};

}  // namespace

void replaceAll(std::string& text, std::string_view old, std::string_view fresh) {
  for (std::size_t at = text.find(old); at != std::string::npos;
       at = text.find(old, at + fresh.size())) {
    text.replace(at, old.size(), fresh);
  }
}

TagTraits traitsOf(const InputTag& tag) {
  TraitsOf visitor;
  tag.accept(visitor);
  return std::move(visitor.traits);
}

bool refusesItsDefault(const InputTag& tag, const TagTraits& traits) {
  const bool isNumber = traits.kind == ValueKind::integer || traits.kind == ValueKind::real;
  return isNumber && !tag.getDefaultValue().empty() &&
         !traits.range.contains(fromText<double>(tag.getDefaultValue()));
}

bool takesAsList(const InputTag& tag, std::string_view text) {
  ListTest test(text);
  tag.accept(test);
  return test.isTaken;
}

std::string formOf(ValueKind kind) {
  switch (kind) {
    case ValueKind::file:
      return "name of a file";
    case ValueKind::seriesFile:
      return "name of a file with a time series";
    case ValueKind::position:
      return "a place as region.place";
    case ValueKind::namedReals:
      return "name:( 1.0 2.0 )";
    case ValueKind::outputValues: {
      std::string form = "values, also as";
      for (const std::string_view accumulator : InputTagSpecialOutputValueList::accumulators) {
        form += " " + std::string(accumulator) + "[value]";
      }
      return form;
    }
    default:
      return {};
  }
}

bool isRequirement(const TagRule& rule, const InputTag& tag) {
  switch (rule.kind) {
    case TagRule::Kind::requiredIf:
      return tag.isMandatoryBySchema();
    case TagRule::Kind::usedIf:
      return refusesItsDefault(tag, traitsOf(tag));
    case TagRule::Kind::exclusive:
      break;
  }
  return false;
}

std::string sentenceOf(const TagRule& rule, const InputTag& tag, Dress tagDress, Dress valueDress) {
  const std::string other = tagDress(rule.other);
  if (rule.condition == nullptr) {
    return "not together with " + other;
  }
  const std::string start = (isRequirement(rule, tag) ? "required if " : "used if ") + other;
  const std::vector<std::string>& values = rule.condition->values;
  if (!rule.condition->equals) {
    // To differ from one of several values is no restriction.
    return values.size() == 1 ? start + " is not " + valueDress(values.front())
                              : start + " is given";
  }
  std::string words;
  for (const std::string& value : values) {
    words += (words.empty() ? "" : " or ") + valueDress(value);
  }
  return start + " is " + words;
}

std::vector<std::string> allowedValuesOf(const InputTag& tag) {
  std::vector<std::string> values;
  for (std::size_t i = 0; i < tag.getNumRestrictedValues(); ++i) {
    values.push_back(tag.getRestrictedValue(i));
  }
  return values;
}

std::string withSigns(std::string text) {
  // Some texts name a sign without the semicolon behind it.
  replaceAll(text, "&lt;", "<");
  replaceAll(text, "&gt;", ">");
  replaceAll(text, "&mu ", "μ ");
  return text;
}

}  // namespace KESTparse
