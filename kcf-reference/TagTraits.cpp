#include "TagTraits.h"

#include <utility>

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
  void visit(const InputTagString& tag) override { set(tag, ValueKind::text); }
  void visit(const InputTagStringStd& tag) override { set(tag, ValueKind::text); }
  void visit(const InputTagFile& tag) override { set(tag, ValueKind::file); }
  void visit(const InputTagSeriesFile& tag) override { set(tag, ValueKind::seriesFile); }
  void visit(const InputTagPosition& tag) override { set(tag, ValueKind::position); }
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
  }
  template <typename T>
  void setList(const InputTagList<T>& tag, ValueKind kind) {
    set(tag, kind);
    traits.itemCount = tag.getItemCount();
    traits.constraint = tag.getConstraint();
    traits.entries = tag.getValidEntries();
  }
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
