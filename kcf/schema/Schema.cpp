#include "schema/Schema.h"

#include <fmt/format.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/InputTagList.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "vocabulary/Supplement.h"

namespace KESTparse {
namespace {

#ifndef KESTRIX_VERSION
#define KESTRIX_VERSION "unversioned"
#endif

using nlohmann::ordered_json;

ordered_json object(ordered_json properties, ordered_json required) {
  ordered_json schema{{"type", "object"}};
  schema["properties"] = std::move(properties);
  if (!required.empty()) {
    schema["required"] = std::move(required);
  }
  schema["additionalProperties"] = false;
  return schema;
}

ordered_json arrayOf(ordered_json items) {
  return {{"type", "array"}, {"items", std::move(items)}, {"minItems", 1}};
}

/// A number of the type `T` within the range of its tag.
template <typename T>
ordered_json numberSchema(const char* type, const InputTag& tag, const TagTraits& traits) {
  ordered_json schema{{"type", type}};
  const Range<double>& range = traits.range;
  if (range.hasLower) {
    schema[range.lowerInclusive ? "minimum" : "exclusiveMinimum"] = static_cast<T>(range.lower);
  }
  if (range.hasUpper) {
    schema[range.upperInclusive ? "maximum" : "exclusiveMaximum"] = static_cast<T>(range.upper);
  }
  if (traits.mayReturnToPreset) {
    schema = {{"anyOf", {std::move(schema), {{"const", fromText<T>(tag.getPresetValue())}}}}};
  }
  return schema;
}

/// One of the words that a tag knows, each with what it means if that is told of all.
ordered_json choiceSchema(const std::vector<std::string>& choices, const InputTag& tag,
                          const std::string& path, const kcf::Supplement& supplement) {
  ordered_json alternatives = ordered_json::array();
  for (const std::string& choice : choices) {
    const std::string meaning = supplement.meaning(path, tag.getName(), choice);
    if (meaning.empty()) {
      return {{"type", "string"}, {"enum", choices}};
    }
    alternatives.push_back({{"const", choice}, {"title", meaning}});
  }
  return {{"type", "string"}, {"oneOf", std::move(alternatives)}};
}

ordered_json textSchema(const InputTag& tag, const TagTraits& traits, const std::string& path,
                        const kcf::Supplement& supplement) {
  ordered_json schema{{"type", "string"}};
  if (tag.isRestricted()) {
    return choiceSchema(allowedValuesOf(tag), tag, path, supplement);
  }
  if (!traits.pattern.empty()) {
    schema["pattern"] = traits.pattern;
  }
  return schema;
}

/// An item of a list of words.
ordered_json wordSchema(const InputTag& tag, const TagTraits& traits, const std::string& path,
                        const kcf::Supplement& supplement) {
  if (!traits.entries.empty()) {
    return choiceSchema(traits.entries, tag, path, supplement);
  }
  return {{"type", "string"}, {"minLength", 1}};
}

ordered_json outputValueSchema(ordered_json word) {
  ordered_json accumulators{"none"};
  for (const std::string_view accumulator : InputTagSpecialOutputValueList::accumulators) {
    accumulators.push_back(accumulator);
  }
  return object({{"accumulator", {{"enum", std::move(accumulators)}}}, {"value", std::move(word)}},
                {"accumulator", "value"});
}

ordered_json listSchema(ordered_json items, const TagTraits& traits) {
  ordered_json schema = arrayOf(std::move(items));
  if (traits.itemCount > 0) {
    schema["minItems"] = traits.itemCount;
  }
  if (traits.itemCount != 0) {
    schema["maxItems"] = std::abs(traits.itemCount);
  }
  return schema;
}

/// What one value of a tag looks like in a document.
ordered_json valueSchema(const InputTag& tag, const TagTraits& traits, const std::string& path,
                         const kcf::Supplement& supplement) {
  switch (traits.kind) {
    case ValueKind::integer:
      return numberSchema<int>("integer", tag, traits);
    case ValueKind::real:
      return numberSchema<double>("number", tag, traits);
    case ValueKind::text:
    case ValueKind::file:
    case ValueKind::position:
      return textSchema(tag, traits, path, supplement);
    case ValueKind::seriesFile:
      return {{"type", "string"}, {"minLength", 1}};
    case ValueKind::integers:
      return listSchema({{"type", "integer"}}, traits);
    case ValueKind::reals:
      return listSchema({{"type", "number"}}, traits);
    case ValueKind::words:
      return listSchema(wordSchema(tag, traits, path, supplement), traits);
    case ValueKind::outputValues:
      return listSchema(outputValueSchema(wordSchema(tag, traits, path, supplement)), traits);
    case ValueKind::namedReals:
      return object({{"tag", {{"type", "string"}, {"minLength", 1}}},
                     {"list", listSchema({{"type", "number"}}, traits)}},
                    {"tag", "list"});
  }
  return true;
}

/// Whether population fills a tag in whenever `condition` holds at the end. A sibling that is
/// itself filled in later does not count yet when the tag is looked at.
bool isSeenInTime(const InputBlock& block, const InputTag& tag, const Condition& condition) {
  if (condition.sibling < 0) {
    return false;
  }
  const InputTag& sibling = block.getLogicalTag(static_cast<std::size_t>(condition.sibling));
  return sibling.getPosition() < tag.getPosition() || sibling.getDefaultValue().empty();
}

/// Objects for which `condition` holds.
ordered_json conditionSchema(const Condition& condition) {
  const std::string sibling(condition.tag);
  ordered_json schema{{"required", {sibling}}};
  if (condition.equals) {
    schema["properties"][sibling] = {{"enum", condition.values}};
  } else if (condition.values.size() == 1) {
    schema["properties"][sibling] = {{"not", {{"const", condition.values.front()}}}};
  }
  return schema;
}

/// Adds that the tag is there: always, or when what `rules` look at is so.
void require(const InputTag& tag, const std::vector<TagRule>& rules, bool isExcludable,
             ordered_json& required, ordered_json& conditional) {
  ordered_json conditions = ordered_json::array();
  for (const TagRule& rule : rules) {
    if (rule.condition != nullptr) {
      conditions.push_back(conditionSchema(*rule.condition));
    } else if (isExcludable) {
      conditions.push_back({{"not", {{"required", {rule.other}}}}});
    }
  }
  if (conditions.empty()) {
    required.push_back(tag.getName());
    return;
  }
  ordered_json condition = conditions.size() == 1 ? std::move(conditions.front())
                                                  : ordered_json{{"allOf", std::move(conditions)}};
  // Tags with the same condition share it.
  for (ordered_json& other : conditional) {
    if (other.contains("if") && other["if"] == condition) {
      other["then"]["required"].push_back(tag.getName());
      return;
    }
  }
  conditional.push_back({{"if", std::move(condition)}, {"then", {{"required", {tag.getName()}}}}});
}

/// Adds when the tag must be there, and what must not be there beside it.
void addPresence(const InputBlock& block, const InputTag& tag, const TagTraits& traits,
                 ordered_json& required, ordered_json& conditional) {
  if (!tag.getDefaultValue().empty()) {
    if (std::all_of(traits.rules.begin(), traits.rules.end(), [&](const TagRule& rule) {
          return rule.condition == nullptr || isSeenInTime(block, tag, *rule.condition);
        })) {
      require(tag, traits.rules, false, required, conditional);
    }
  } else if (tag.isMandatoryBySchema()) {
    std::vector<TagRule> rules = traits.rules;
    // A condition of use does not matter.
    std::erase_if(rules, [](const TagRule& rule) { return rule.kind == TagRule::Kind::usedIf; });
    require(tag, rules, true, required, conditional);
  }
  for (const TagRule& rule : traits.rules) {
    if (rule.kind == TagRule::Kind::exclusive) {
      conditional.push_back({{"not", {{"required", {tag.getName(), rule.other}}}}});
    }
  }
}

/// The items of a list that is written as `( 1.0 2.0 )`.
template <typename T>
ordered_json itemsOf(const std::string& text) {
  ordered_json items = ordered_json::array();
  for (const std::string& item : split(" ()", text)) {
    items.push_back(fromText<T>(item));
  }
  return items;
}

/// The default of a tag as it stands in a document; null where there is none.
ordered_json defaultOf(const InputTag& tag, const TagTraits& traits) {
  const std::string& text = tag.getDefaultValue();
  if (text.empty()) {
    return {};
  }
  switch (traits.kind) {
    case ValueKind::integer:
      return fromText<int>(text);
    case ValueKind::real:
      return fromText<double>(text);
    case ValueKind::text:
    case ValueKind::file:
    case ValueKind::seriesFile:
    case ValueKind::position:
      return text;
    case ValueKind::integers:
      return itemsOf<int>(text);
    case ValueKind::reals:
      return itemsOf<double>(text);
    case ValueKind::words:
      return split(" ()", text);
    case ValueKind::outputValues:
    case ValueKind::namedReals:
      return {};
  }
  return {};
}

/// Builds the schema of a block and of those in it.
class Builder {
 public:
  ordered_json schemaOf(const InputBlock& block, const std::string& path);

 private:
  void addTags(const InputBlock& block, const std::string& path, ordered_json& properties,
               ordered_json& required, ordered_json& conditional) const;
  void addBlocks(const InputBlock& block, const std::string& path, ordered_json& properties,
                 ordered_json& required);

  kcf::Supplement supplement_;
};

void Builder::addTags(const InputBlock& block, const std::string& path, ordered_json& properties,
                      ordered_json& required, ordered_json& conditional) const {
  for (const InputTag& tag : block.logicalTags()) {
    const TagTraits traits = traitsOf(tag);
    addPresence(block, tag, traits, required, conditional);
    ordered_json schema = valueSchema(tag, traits, path, supplement_);
    if (const ordered_json value = defaultOf(tag, traits); !value.is_null()) {
      schema["default"] = value;
    }
    if (tag.isRepeatable()) {
      schema = arrayOf(std::move(schema));
    }
    const std::string more = supplement_.description(path, tag.getName());
    const std::string own = withSigns(std::string(tag.getDescription()));
    schema["description"] =
        fmt::format("{}{}{}", own, own.empty() || more.empty() ? "" : " ", more);
    if (!tag.getUnit().empty()) {
      schema["unit"] = tag.getUnit();
    }
    properties[std::string(tag.getName())] = std::move(schema);
  }
}

void Builder::addBlocks(const InputBlock& block, const std::string& path, ordered_json& properties,
                        ordered_json& required) {
  // What population makes of nothing is always there.
  const std::unique_ptr<InputBlock> instance = block.logicalClone(nullptr);
  instance->populate();
  for (const InputBlock& child : block.logicalBlocks()) {
    const std::string name(child.getName());
    if (child.isMandatory() || instance->getNumBlocksNamed(name) > 0) {
      required.push_back(name);
    }
    ordered_json schema = schemaOf(child, pathOf(path, child));
    properties[name] = child.isRepeatable() ? arrayOf(std::move(schema)) : std::move(schema);
  }
}

ordered_json Builder::schemaOf(const InputBlock& block, const std::string& path) {
  ordered_json properties = ordered_json::object();
  ordered_json required = ordered_json::array();
  ordered_json conditional = ordered_json::array();
  addTags(block, path, properties, required, conditional);
  addBlocks(block, path, properties, required);
  ordered_json schema = object(std::move(properties), std::move(required));
  if (!conditional.empty()) {
    schema["allOf"] = std::move(conditional);
  }
  std::ostringstream description;
  block.getDescription(description);
  schema["title"] = block.getName();
  schema["description"] = description.str();
  return schema;
}

/// What is told more than once in `schema` moves to `definitions`, each under a name of its own.
class Definitions {
 public:
  explicit Definitions(ordered_json& schema) {
    count(schema);
    replace(schema, "setup");
  }

  [[nodiscard]] ordered_json take() { return std::move(definitions_); }

 private:
  /// Shorter ones are told as often as they are needed.
  static constexpr std::size_t shortest = 120;

  /// Whether a node is a schema of a block or a tag, and not a part of one.
  static bool isWhole(const ordered_json& node) {
    return node.is_object() && node.contains("description") && node["description"].is_string();
  }

  void count(const ordered_json& node) {
    if (isWhole(node)) {
      ++counts_[node.dump()];
    }
    for (const auto& child : node) {
      if (child.is_structured()) {
        count(child);
      }
    }
  }

  // What is within a repeated schema is the same each time and is replaced once.
  void replace(ordered_json& node, const std::string& name) {
    for (const auto& [key, child] : node.items()) {
      if (!child.is_structured()) {
        continue;
      }
      const std::string childName = node.is_object() && isWhole(child) ? key : name;
      const std::string text = isWhole(child) ? child.dump() : std::string();
      if (text.size() < shortest || counts_[text] < 2) {
        replace(child, childName);
        continue;
      }
      std::string& reference = references_[text];
      if (reference.empty()) {
        reference = freeName(childName);
        definitions_[reference] = nullptr;
        replace(child, childName);
        definitions_[reference] = child;
      }
      child = {{"$ref", "#/$defs/" + reference}};
    }
  }

  [[nodiscard]] std::string freeName(const std::string& wanted) const {
    std::string name = wanted;
    for (int number = 2; definitions_.contains(name); ++number) {
      name = wanted + "_" + std::to_string(number);
    }
    return name;
  }

  std::map<std::string, int> counts_;
  std::map<std::string, std::string> references_;
  ordered_json definitions_ = ordered_json::object();
};

/// The logical sub-block `name`, which exists.
const InputBlock& childOf(const InputBlock& block, std::string_view name) {
  return block.getLogicalBlock(static_cast<std::size_t>(block.getLogicalBlockPosition(name)));
}

}  // namespace

ordered_json documentSchema(const InputBlock& root) {
  Builder builder;
  ordered_json domain = builder.schemaOf(childOf(root, "DOMAIN"), "/DOMAIN");
  // Documents leave the parallel execution out.
  domain["properties"].erase("PARALLEL");
  const ordered_json project = builder.schemaOf(childOf(root, "PROJECT"), "/PROJECT");
  ordered_json setup =
      object({{"simulation_name", project["properties"]["title"]}, {"KESTMD", std::move(domain)}},
             {"simulation_name", "KESTMD"});
  ordered_json schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                      {"$id", "urn:kestrix:setup:" KESTRIX_VERSION},
                      {"title", "KESTRIX simulation setup"},
                      {"$comment", "Version " KESTRIX_VERSION}};
  // An editor finds this schema by the key in a document.
  schema.update(
      object({{"$schema", {{"type", "string"}}}, {"SETUP", std::move(setup)}}, {"SETUP"}));
  Definitions definitions(schema);
  schema["$defs"] = definitions.take();
  return schema;
}

}  // namespace KESTparse

namespace kcf {

Verb schemaVerb() {
  return {"schema",
          "Know the vocabulary",
          "Print a JSON Schema of the documents that the converter writes",
          R"(The schema is of draft 2020-12. Every document that the converter writes is
valid against it; keys that the vocabulary has not, missing keys, wrong types,
words that are not allowed, numbers out of range and lists of a wrong length
are not.)",
          {},
          [](const Arguments&) {
            std::cout << KESTparse::documentSchema(KESTparse::KestrixInputRoot()).dump(1) << "\n";
            return status::done;
          },
          {{"Keep the schema for an editor or a validator", "kcf schema > kestrix.schema.json"}}};
}

}  // namespace kcf
