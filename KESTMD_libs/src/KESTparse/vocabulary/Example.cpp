#include "KESTparse/vocabulary/Example.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <sstream>
#include <string_view>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

/// A number within `range`, a plain one if possible.
double numberIn(const Range<double>& range) {
  if (range.contains(1.0)) {
    return 1.0;
  }
  if (range.hasLower && range.hasUpper) {
    return (range.lower + range.upper) / 2.0;
  }
  return range.hasLower ? std::floor(range.lower) + 1.0 : std::ceil(range.upper) - 1.0;
}

/// As many of `items` as the list of a tag takes.
std::string listOf(const TagTraits& traits, const std::vector<std::string>& items) {
  std::size_t count = items.size();
  if (traits.itemCount > 0) {
    count = static_cast<std::size_t>(traits.itemCount);
  } else if (traits.itemCount < 0) {
    count = std::min(count, static_cast<std::size_t>(-traits.itemCount));
  }
  std::string list = "(";
  for (std::size_t i = 0; i < count; ++i) {
    list += " " + items[i % items.size()];
  }
  return list + " )";
}

std::string sampleOf(const InputTag& tag) {
  if (tag.isRestricted()) {
    return tag.getRestrictedValue(0);
  }
  const TagTraits traits = traitsOf(tag);
  std::string own = "my_" + std::string(tag.getName());
  switch (traits.kind) {
    case ValueKind::integer:
    case ValueKind::real:
      return doubleToString(numberIn(traits.range));
    case ValueKind::text:
      return own;
    case ValueKind::file:
    case ValueKind::seriesFile:
      return own + ".txt";
    case ValueKind::position:
      return "my_region.my_place";
    case ValueKind::integers:
      return listOf(traits, {"1", "2"});
    case ValueKind::reals:
      return listOf(traits, {"1.0", "2.0"});
    case ValueKind::words:
    case ValueKind::outputValues:
      if (!traits.entries.empty()) {
        const auto count = std::min<std::ptrdiff_t>(2, std::ssize(traits.entries));
        return listOf(traits, {traits.entries.begin(), traits.entries.begin() + count});
      }
      return listOf(traits, {"first", "second"});
    case ValueKind::namedReals:
      return "my_name:" + listOf(traits, {"1.0", "2.0"});
  }
  return own;
}

/// Chooses the tags of one block.
class Choice {
 public:
  explicit Choice(const InputBlock& block) : block_(&block) {
    // Later tags may require earlier ones.
    for (std::size_t before = tags_.size() + 1; before != tags_.size();) {
      before = tags_.size();
      addRequired();
    }
  }

  /// Adds tags without rules, those with a default first, until there are `count`.
  void addOptional(std::size_t count) {
    for (const bool hasDefault : {true, false}) {
      for (std::size_t i = 0; i < block_->getLogicalNumTags() && tags_.size() < count; ++i) {
        const InputTag& tag = block_->getLogicalTag(i);
        const TagTraits traits = traitsOf(tag);
        if (tag.getDefaultValue().empty() != hasDefault && traits.rules.empty() &&
            traits.kind != ValueKind::seriesFile && isWritableName(tag.getName())) {
          tags_.try_emplace(i, hasDefault ? tag.getDefaultValue() : sampleOf(tag));
        }
      }
    }
  }

  /// The values by the place of the tag in the schema.
  [[nodiscard]] const std::map<std::size_t, std::string>& tags() const { return tags_; }

 private:
  /// Whether the tag that `condition` looks at has, or will have by its default, such a value.
  [[nodiscard]] bool isMet(const Condition& condition) const {
    if (condition.sibling < 0) {
      return false;
    }
    const auto sibling = static_cast<std::size_t>(condition.sibling);
    const auto chosen = tags_.find(sibling);
    if (chosen != tags_.end()) {
      return condition.isMet(chosen->second);
    }
    const std::string& value = block_->getLogicalTag(sibling).getDefaultValue();
    return !value.empty() && condition.isMet(value);
  }

  [[nodiscard]] bool isRequired(const InputTag& tag) const {
    const std::vector<TagRule> rules = traitsOf(tag).rules;
    return tag.isMandatoryBySchema() && std::all_of(rules.begin(), rules.end(), [this](auto& rule) {
             switch (rule.kind) {
               case TagRule::Kind::usedIf:
                 return true;
               case TagRule::Kind::requiredIf:
                 return isMet(*rule.condition);
               case TagRule::Kind::exclusive:
                 break;
             }
             return !tags_.contains(
                 static_cast<std::size_t>(block_->getLogicalTagPosition(rule.other)));
           });
  }

  void addRequired() {
    for (std::size_t i = 0; i < block_->getLogicalNumTags(); ++i) {
      const InputTag& tag = block_->getLogicalTag(i);
      if (!tags_.contains(i) && tag.getDefaultValue().empty() && isRequired(tag)) {
        tags_[i] = sampleOf(tag);
      }
    }
  }

  const InputBlock* block_;
  std::map<std::size_t, std::string> tags_;
};

/// Writes what is mandatory in `block`; more for the block that the example is about.
void write(const InputBlock& block, bool isTopic, std::size_t depth, std::ostream& out) {
  constexpr std::size_t fewTags = 3;
  const std::string indent(2 * depth, ' ');
  Choice choice(block);
  if (isTopic) {
    choice.addOptional(fewTags);
  }
  out << indent << block.getName() << " {\n";
  for (const auto& [position, value] : choice.tags()) {
    out << indent << "  " << block.getLogicalTag(position).getName() << " = " << value << "\n";
  }
  bool isEmpty = choice.tags().empty();
  for (std::size_t i = 0; i < block.getLogicalNumBlocks(); ++i) {
    if (block.getLogicalBlock(i).isMandatory()) {
      write(block.getLogicalBlock(i), false, depth + 1, out);
      isEmpty = false;
    }
  }
  if (isEmpty && isTopic && block.getLogicalNumBlocks() > 0) {
    write(block.getLogicalBlock(0), true, depth + 1, out);
  }
  out << indent << "}\n";
}

/// Whether `snippet` parses as the block at `place`.
bool parses(const std::string& snippet, const Place& place) {
  std::string text;
  std::string ends;
  const std::vector<std::string> names = split("/", place.path);
  for (std::size_t i = 0; i + 1 < names.size(); ++i) {
    text += names[i] + " {\n";
    ends += "}\n";
  }
  std::istringstream in(text + snippet + ends);
  KestrixInputRoot root;
  InputParser parser(root);
  try {
    parser.parse(in, true, "");
  } catch (const InputParseError&) {
    return false;
  }
  return parser.getMessage().empty();
}

}  // namespace

std::string exampleOf(const Place& place) {
  std::ostringstream given;
  place.block->getExample(given);
  if (!given.str().empty() && parses(given.str(), place)) {
    return given.str();
  }
  std::ostringstream out;
  if (place.block->getLogicalParent() == nullptr) {
    // The root has no name in a command file.
    for (std::size_t i = 0; i < place.block->getLogicalNumBlocks(); ++i) {
      write(place.block->getLogicalBlock(i), true, 0, out);
    }
  } else {
    write(*place.block, true, 0, out);
  }
  return out.str();
}

}  // namespace KESTparse
