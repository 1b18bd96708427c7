#include "vocabulary/Vocabulary.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Names.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "vocabulary/Supplement.h"

namespace KESTparse {
namespace {

#ifndef KESTRIX_VERSION
#define KESTRIX_VERSION "unversioned"
#endif

using nlohmann::ordered_json;

/// Null where the numbers of the tag are not limited.
ordered_json rangeOf(const TagTraits& traits) {
  ordered_json range;
  if (traits.range.hasLower) {
    range["lower"] = traits.range.lower;
    range["lowerInclusive"] = traits.range.lowerInclusive;
  }
  if (traits.range.hasUpper) {
    range["upper"] = traits.range.upper;
    range["upperInclusive"] = traits.range.upperInclusive;
  }
  return range;
}

/// How many items a value has; null where it is no list.
ordered_json lengthOf(const TagTraits& traits) {
  switch (traits.kind) {
    case ValueKind::integers:
    case ValueKind::reals:
    case ValueKind::words:
    case ValueKind::outputValues:
    case ValueKind::namedReals:
      break;
    default:
      return {};
  }
  ordered_json length{{"least", std::max(traits.itemCount, 1)}};
  if (traits.itemCount != 0) {
    length["most"] = std::abs(traits.itemCount);
  }
  return length;
}

ordered_json conditionsOf(const TagTraits& traits) {
  ordered_json conditions = ordered_json::array();
  for (const TagRule& rule : traits.rules) {
    switch (rule.kind) {
      case TagRule::Kind::usedIf:
      case TagRule::Kind::requiredIf:
        conditions.push_back(
            {{"kind", rule.kind == TagRule::Kind::usedIf ? "usedIf" : "requiredIf"},
             {"tag", rule.other},
             {"equals", rule.condition->equals},
             {"values", rule.condition->values}});
        break;
      case TagRule::Kind::exclusive:
        conditions.push_back({{"kind", "exclusive"}, {"tag", rule.other}});
        break;
    }
  }
  return conditions;
}

/// What the choices of a tag, or the items of its list, mean, as far as that is told.
ordered_json meaningsOf(const std::string& path, const InputTag& tag, const TagTraits& traits,
                        const kcf::Supplement& supplement) {
  std::vector<std::string> words = allowedValuesOf(tag);
  words.insert(words.end(), traits.entries.begin(), traits.entries.end());
  ordered_json meanings = ordered_json::object();
  for (const std::string& word : words) {
    const std::string meaning = supplement.meaning(path, tag.getName(), word);
    if (!meaning.empty()) {
      meanings[word] = meaning;
    }
  }
  return meanings;
}

ordered_json describe(const std::string& path, const InputTag& tag,
                      const kcf::Supplement& supplement) {
  const TagTraits traits = traitsOf(tag);
  return {{"name", tag.getName()},
          {"type", tag.getTypeName()},
          {"mandatory", tag.isMandatoryBySchema()},
          {"repeatable", tag.isRepeatable()},
          {"default", tag.getDefaultValue()},
          {"preset", tag.getPresetValue()},
          {"unit", tag.getUnit()},
          {"constraint", tag.getConstraintDescription()},
          {"allowedValues", allowedValuesOf(tag)},
          {"validEntries", traits.entries},
          {"description", tag.getDescription()},
          {"more", supplement.description(path, tag.getName())},
          {"range", rangeOf(traits)},
          {"length", lengthOf(traits)},
          {"conditions", conditionsOf(traits)},
          {"meanings", meaningsOf(path, tag, traits, supplement)},
          {"names", blocksNamedBy(path, tag.getName())}};
}

void describe(const InputBlock& block, const std::string& path, const kcf::Supplement& supplement,
              ordered_json& blocks) {
  std::ostringstream description;
  block.getDescription(description);
  ordered_json subBlocks = ordered_json::array();
  for (const InputBlock& child : block.logicalBlocks()) {
    subBlocks.push_back(child.getName());
  }
  ordered_json tags = ordered_json::array();
  for (const InputTag& tag : block.logicalTags()) {
    tags.push_back(describe(path, tag, supplement));
  }
  blocks.push_back({{"path", path.empty() ? "/" : path},
                    {"name", block.getName()},
                    {"mandatory", block.isMandatory()},
                    {"repeatable", block.isRepeatable()},
                    {"description", description.str()},
                    {"subBlocks", std::move(subBlocks)},
                    {"tags", std::move(tags)}});
  for (const InputBlock& child : block.logicalBlocks()) {
    describe(child, path + "/" + std::string(child.getName()), supplement, blocks);
  }
}

}  // namespace

ordered_json vocabulary(const InputBlock& root) {
  ordered_json blocks = ordered_json::array();
  describe(root, "", kcf::Supplement(), blocks);
  return {{"version", KESTRIX_VERSION}, {"blocks", std::move(blocks)}};
}

}  // namespace KESTparse

namespace kcf {

Verb vocabularyVerb() {
  return {"vocabulary",
          "Know the vocabulary",
          "Print all blocks and tags with what holds for them, as JSON",
          R"(The blocks stand depth first, each with its path, its sub-blocks and its tags;
a tag tells its type, default, unit, range, length and conditions, what its
choices mean and which blocks it names. Constraint and description are prose, the
other fields are data.)",
          {},
          [](const Arguments&) {
            std::cout << KESTparse::vocabulary(KESTparse::KestrixInputRoot()).dump(2) << "\n";
            return status::done;
          },
          {{"List the paths of all blocks", "kcf vocabulary | jq -r '.blocks[].path'"}}};
}

}  // namespace kcf
