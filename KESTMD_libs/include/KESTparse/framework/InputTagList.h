/// \file
/// Tags that hold a list in parentheses.
#pragma once

#include <array>
#include <map>

#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/ListParser.h"

namespace KESTparse {

/// What the schema says of a list.
template <typename T>
struct ListFacts : TagFacts {
  std::vector<T> InputBlock::*member = nullptr;  ///< the bound variable
  std::unique_ptr<ListParser> parser;            ///< the syntax of the list
  std::string_view constraint;                   ///< heads the constraint description
  std::vector<std::string> validEntries;         ///< allowed items; empty means any
};

/// A list of `int`, `double` or `std::string`.
template <typename T>
class InputTagList : public TagKind<InputTagList<T>> {
 public:
  using Facts = ListFacts<T>;
  static constexpr bool mayRepeat = true;
  using TagKind<InputTagList<T>>::TagKind;

  [[nodiscard]] std::string getTypeName() const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  [[nodiscard]] std::string getUnit() const override;
  void assignPreset() override;
  void commit() override;

  /// The items as they stand in the bound variable.
  [[nodiscard]] const std::vector<T>& getValues() const;
  [[nodiscard]] const std::vector<std::string>& getValidEntries() const {
    return facts().validEntries;
  }
  [[nodiscard]] bool hasRestrictedValues() const { return !facts().validEntries.empty(); }
  /// What heads the constraint description.
  [[nodiscard]] std::string_view getConstraint() const { return facts().constraint; }
  /// How many items the list must hold; see `ListParser`.
  [[nodiscard]] int getItemCount() const { return facts().parser->getItemCount(); }
  /// Whether `item` is one of the valid entries, or there are none.
  [[nodiscard]] virtual bool isValidEntry(std::string_view item) const;
  /// What is wrong with `text`, parentheses included, as a value; empty when nothing is.
  [[nodiscard]] std::string faultOf(std::string_view text) const;

 protected:
  bool check() override;
  bool isAllowedWord() override;
  [[nodiscard]] const Facts& facts() const { return static_cast<const Facts&>(*this->facts_); }
  /// The bound variable; null for a tag that is bound to nothing.
  [[nodiscard]] std::vector<T>* target() const;
};

/// An item of a list of output values: the value, and what is accumulated of it.
struct OutputItem {
  std::string_view accumulator;  ///< what stands before the bracket; empty for a plain value
  std::string_view value;        ///< what stands between the brackets, or the whole item
};

/// Takes an item such as `max[depth]` apart. An item that has a bracket but does not end in one is
/// a plain value.
OutputItem splitOutputItem(std::string_view item);

/// A list of output values, each of which may be wrapped: min[depth].
class InputTagSpecialOutputValueList
    : public TagKind<InputTagSpecialOutputValueList, InputTagList<std::string>> {
 public:
  using TagKind::TagKind;
  [[nodiscard]] bool isValidEntry(std::string_view item) const override;
  /// What may be accumulated of a value.
  static constexpr std::array<std::string_view, 3> accumulators{"min", "max", "integrate"};
};

/// What the schema says of a list with a name.
template <typename T>
struct TaggedListFacts : TagFacts {
  std::map<std::string, std::vector<T>> InputBlock::*member = nullptr;  ///< the bound variable
  std::unique_ptr<ListParser> parser;                                   ///< the syntax of the list
  std::string_view constraint;  ///< the constraint description
};

/// A list with a name, `name:( 1 2 3 )`, kept in a map that all instances of the tag share.
template <typename T>
class InputTagTaggedList : public TagKind<InputTagTaggedList<T>> {
 public:
  using Facts = TaggedListFacts<T>;
  static constexpr bool mayRepeat = true;
  using TagKind<InputTagTaggedList<T>>::TagKind;

  [[nodiscard]] std::string getTypeName() const override;
  [[nodiscard]] std::string getConstraintDescription() const override;
  void assignPreset() override;
  void commit() override;

  /// The name that this instance put into the map; empty as long as there is none.
  [[nodiscard]] const std::string& getListName() const { return lastTag_; }
  /// The constraint description.
  [[nodiscard]] std::string_view getConstraint() const { return facts().constraint; }
  /// The list under that name.
  [[nodiscard]] const std::vector<T>& getValues() const;
  /// What is wrong with `text` as a value, whatever names there are already; empty when nothing is.
  [[nodiscard]] std::string faultOf(std::string_view text) const;

 protected:
  bool check() override;
  /// Another instance may take the name.
  [[nodiscard]] bool passesForGood() const override { return false; }
  [[nodiscard]] const Facts& facts() const { return static_cast<const Facts&>(*this->facts_); }
  /// The bound variable; null for a tag that is bound to nothing.
  [[nodiscard]] std::map<std::string, std::vector<T>>* target() const;

 private:
  [[nodiscard]] std::string listFault(std::string_view list) const;

  std::string lastTag_;
};

}  // namespace KESTparse
