/// \file
/// What a block class of the schema is written with: rows for its tags and sub-blocks, and its
/// rules.
#pragma once

#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "KESTparse/base/Assert.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagEnum.h"
#include "KESTparse/framework/MemberName.h"
#include "KESTparse/framework/RuleMessage.h"
#include "KESTparse/framework/TagRow.h"

namespace KESTparse {

/// A failed assertion of the bookkeeping of sub-blocks: shows `member` of `owner` and
/// `state`.
[[noreturn]] void bookkeepingFailed(std::string_view member, std::string_view state,
                                    std::string_view owner = {});

/// Base of the block class `SelfClass`. It gives the class its cloning, the bookkeeping of its
/// sub-blocks and the words in which its tags and rules are written. A member holds the value of
/// the tag of its own name. \tparam Base what stands between the class and `InputBlock`, if
/// anything does.
template <class SelfClass, class Base = InputBlock>
class SchemaBlock : public Base {
 public:
  using Self = SelfClass;
  using Base::Base;

  [[nodiscard]] std::unique_ptr<InputBlock> logicalClone(InputBlock* actualParent) const override {
    ASSERT(this->getLogicalMaster() == nullptr, "logicalMaster_ == nullptr");
    auto clone = std::make_unique<Self>(static_cast<const Self&>(*this));
    clone->bindTo(actualParent);
    return clone;
  }

 protected:
  /// What stands in front of a list of sub-blocks in a failed assertion.
  static constexpr std::string_view listOwner{};

  // The rows of `createTags`. Where no name is given, the tag is called as its member.

  /// A real number.
  template <double Self::*Member>
  TagRow<NumberFacts<double>> real(std::string_view help) {
    return addTagRow<InputTagNumber<double>>(memberName<Member>(), help, bound<Member>());
  }
  /// A real number that is a value of the whole process.
  template <double GlobalValues::*Member>
  TagRow<NumberFacts<double>> globalReal(std::string_view name, std::string_view help) {
    return addTagRow<InputTagNumber<double>>(
        memberName<Member>(), name, help,
        [](NumberFacts<double>& facts) { facts.global = Member; });
  }
  /// An integer.
  template <int Self::*Member>
  TagRow<NumberFacts<int>> integer(std::string_view help) {
    return addTagRow<InputTagNumber<int>>(memberName<Member>(), help, bound<Member>());
  }
  /// A slope in per mill.
  template <double Self::*Member>
  TagRow<NumberFacts<double>> slopePerMill(std::string_view help) {
    return addTagRow<InputTagSlope>(memberName<Member>(), help, bound<Member>());
  }
  /// "yes" or "no".
  template <bool Self::*Member>
  TagRow<BooleanFacts> boolean(std::string_view help) {
    return boolean<Member>(memberName<Member>(), help);
  }
  template <bool Self::*Member>
  TagRow<BooleanFacts> boolean(std::string_view name, std::string_view help) {
    auto row = addTagRow<InputTagBoolean>(memberName<Member>(), name, help, bound<Member>());
    row.oneOf({"no", "yes"});
    return row;
  }
  /// A free text, or one of a few.
  template <std::string Self::*Member>
  TagRow<StringFacts> text(std::string_view help) {
    return addTagRow<InputTagString>(memberName<Member>(), help, bound<Member>());
  }
  /// One word of letters, digits, `_` and `-`.
  template <std::string Self::*Member>
  TagRow<StringFacts> word(std::string_view help) {
    return addTagRow<InputTagString>(memberName<Member>(), help, [](StringFacts& facts) {
      facts.member = static_cast<std::string InputBlock::*>(Member);
      facts.validator = std::make_unique<InputTagValidatorOneWord>();
    });
  }
  /// A text that no rule reads: the tag keeps it.
  TagRow<StringFacts> keptText(std::string_view name, std::string_view help) {
    return addTagRow<InputTagStringStd>(name, help, [](StringFacts&) {});
  }
  /// The name of a file.
  template <std::string Self::*Member>
  TagRow<StringFacts> fileName(std::string_view help) {
    return addTagRow<InputTagFile>(memberName<Member>(), help, bound<Member>());
  }
  /// The name of a time series, and the table that takes its rows.
  template <std::string Self::*Member, Kestrix::Table Self::*Table>
  TagRow<StringFacts> seriesFile(std::string_view help) {
    return addTagRow<InputTagSeriesFile>(memberName<Member>(), help, [](StringFacts& facts) {
      facts.member = static_cast<std::string InputBlock::*>(Member);
      facts.table = static_cast<Kestrix::Table InputBlock::*>(Table);
    });
  }
  /// A place in another region, and the variables for the place and for the region.
  template <std::string Self::*Place, std::string Self::*Region>
  TagRow<StringFacts> positionOf(std::string_view name, std::string_view help) {
    return addTagRow<InputTagPosition>(memberName<Place>(), name, help, [](StringFacts& facts) {
      facts.member = static_cast<std::string InputBlock::*>(Place);
      facts.regionMember = static_cast<std::string InputBlock::*>(Region);
    });
  }
  /// A list of integers.
  template <std::vector<int> Self::*Member>
  TagRow<ListFacts<int>> integers(std::string_view help) {
    return addTagRow<InputTagList<int>>(memberName<Member>(), help, listBound<Member, int>());
  }
  /// A list of real numbers.
  template <std::vector<double> Self::*Member>
  TagRow<ListFacts<double>> reals(std::string_view help) {
    return addTagRow<InputTagList<double>>(memberName<Member>(), help, listBound<Member, double>());
  }
  /// A list of words.
  template <std::vector<std::string> Self::*Member>
  TagRow<ListFacts<std::string>> words(std::string_view help) {
    return addTagRow<InputTagList<std::string>>(memberName<Member>(), help,
                                                listBound<Member, std::string>());
  }
  /// A list of output values.
  template <std::vector<std::string> Self::*Member>
  TagRow<ListFacts<std::string>> outputValues(std::string_view help) {
    return addTagRow<InputTagSpecialOutputValueList>(memberName<Member>(), help,
                                                     listBound<Member, std::string>());
  }
  /// Lists of real numbers, each with a name.
  template <std::map<std::string, std::vector<double>> Self::*Member>
  TagRow<TaggedListFacts<double>> taggedReals(std::string_view help) {
    return addTagRow<InputTagTaggedList<double>>(
        memberName<Member>(), help, [](TaggedListFacts<double>& facts) {
          facts.member =
              static_cast<std::map<std::string, std::vector<double>> InputBlock::*>(Member);
          facts.parser = std::make_unique<WhiteSpaceListParser<double>>();
        });
  }

  /// A word for a value of an enumeration.
  template <auto Member, typename T>
  TagRow<EnumFacts<T>> choice(std::string_view help,
                              std::initializer_list<std::pair<const char*, T>> meanings) {
    std::map<std::string, T> sorted(meanings.begin(), meanings.end());
    return addTagRow<InputTagEnum<T>>(memberName<Member>(), help, [&sorted](EnumFacts<T>& facts) {
      facts.member = static_cast<T InputBlock::*>(Member);
      for (const auto& [word, value] : sorted) {
        facts.restrictedValues.push_back(word);
        facts.values.push_back(value);
      }
    });
  }

  // The rows of `createSubBlocks`.

  /// The sub-block `name`, of the class that `Member` points to or is a vector of pointers to.
  template <auto Member>
  SubBlockAttributes subBlock(std::string_view name) {
    using Slot = std::remove_reference_t<decltype(std::declval<Self&>().*Member)>;
    using Child = typename SlotOf<Slot>::Child;
    SubBlockRow row;
    row.master = std::make_unique<Child>(name, this, false, false);
    row.file = &fileChild<Member, Child>;
    row.unfile = &unfileChild<Member, Child>;
    return this->addLogicalBlock(std::move(row));
  }

  // The words of `checkRules`.

  /// Reports an error of this block that is about the tags of `Members`, the wrong one first.
  template <auto... Members, typename... Values>
  void error(const RuleWords<std::type_identity_t<Values>...>& rule,
             fmt::format_string<const Values&...> text, const Values&... values) {
    report(Severity::error, *this, {about<Members>(static_cast<const Self&>(*this))...}, rule, text,
           values...);
  }
  /// Reports a warning of this block likewise.
  template <auto... Members, typename... Values>
  void warning(const RuleWords<std::type_identity_t<Values>...>& rule,
               fmt::format_string<const Values&...> text, const Values&... values) {
    report(Severity::warning, *this, {about<Members>(static_cast<const Self&>(*this))...}, rule,
           text, values...);
  }

 private:
  template <class Slot>
  struct SlotOf;
  template <class T>
  struct SlotOf<T*> {
    using Child = T;
  };
  template <class T>
  struct SlotOf<std::vector<T*>> {
    using Child = T;
  };

  template <auto Member, class Child>
  static void fileChild(InputBlock& parent, InputBlock& child) {
    auto& slot = static_cast<Self&>(parent).*Member;
    auto* const typed = dynamic_cast<Child*>(&child);
    if constexpr (std::is_pointer_v<std::remove_reference_t<decltype(slot)>>) {
      if (slot != nullptr) {
        bookkeepingFailed(memberName<Member>(), " == nullptr");
      }
      slot = typed;
      if (slot == nullptr) {
        bookkeepingFailed(memberName<Member>(), " != nullptr");
      }
    } else {
      slot.push_back(typed);
      if (slot.back() == nullptr) {
        bookkeepingFailed(memberName<Member>(), ".back() != nullptr", Self::listOwner);
      }
    }
  }

  template <auto Member, class Child>
  static bool unfileChild(InputBlock& parent, const InputBlock& child) {
    auto& slot = static_cast<Self&>(parent).*Member;
    if constexpr (std::is_pointer_v<std::remove_reference_t<decltype(slot)>>) {
      slot = nullptr;
      return true;
    } else {
      return std::erase(slot, &child) > 0;
    }
  }

  /// Binds a tag to a variable of the block.
  template <auto Member>
  static auto bound() {
    return [](auto& facts) { facts.member = static_cast<decltype(facts.member)>(Member); };
  }
  template <auto Member, typename T>
  static auto listBound() {
    return [](ListFacts<T>& facts) {
      facts.member = static_cast<decltype(facts.member)>(Member);
      facts.parser = std::make_unique<WhiteSpaceListParser<T>>();
    };
  }

  template <class Tag, class Bind>
  TagRow<typename Tag::Facts> addTagRow(std::string_view member, std::string_view name,
                                        std::string_view help, Bind bind) {
    auto facts = std::make_unique<typename Tag::Facts>();
    bind(*facts);
    return makeTagRow<Tag>(*this, std::move(facts), member, name, help);
  }
  template <class Tag, class Bind>
  TagRow<typename Tag::Facts> addTagRow(std::string_view name, std::string_view help, Bind bind) {
    return addTagRow<Tag>(name, name, help, bind);
  }
};

}  // namespace KESTparse
