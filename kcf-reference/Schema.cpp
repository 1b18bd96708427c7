#include "Schema.h"

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "KESTparse/framework/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/InputTagEnum.h"
#include "KESTparse/framework/InputTagList.h"
#include "KESTparse/framework/InputTagNumber.h"
#include "KESTparse/framework/InputTagString.h"
#include "KESTparse/framework/InputTagVisitor.h"

namespace KESTparse {
namespace {

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

template <typename T>
void addRange(const Range<T>& range, ordered_json& schema) {
  if (range.hasLower) {
    schema[range.lowerInclusive ? "minimum" : "exclusiveMinimum"] = range.lower;
  }
  if (range.hasUpper) {
    schema[range.upperInclusive ? "maximum" : "exclusiveMaximum"] = range.upper;
  }
}

/// What a tag's value looks like, and what the tag depends on.
class ValueSchema : public InputTagVisitor {
 public:
  void visit(const InputTagNumber<int>& tag) override { setNumber(tag, "integer"); }
  void visit(const InputTagNumber<double>& tag) override { setNumber(tag, "number"); }
  void visit(const InputTagSlope& tag) override { setNumber(tag, "number"); }
  void visit(const InputTagBoolean& tag) override { setText(tag); }
  void visit(const InputTagString& tag) override {
    setText(tag);
    if (tag.getValidator() != nullptr && !tag.isRestricted()) {
      schema["pattern"] = tag.getValidator()->pattern();
    }
  }
  void visit(const InputTagStringStd& tag) override { setText(tag); }
  void visit(const InputTagFile& tag) override { setText(tag); }
  void visit(const InputTagSeriesFile& tag) override {
    setText(tag);
    schema["minLength"] = 1;
  }
  void visit(const InputTagPosition& tag) override {
    setText(tag);
    schema["pattern"] = R"(^[^.]+\.[^.]*$)";
  }
  void visit(const InputTagEnumBase& tag) override { setText(tag); }
  void visit(const InputTagList<int>& tag) override { setList(tag, {{"type", "integer"}}); }
  void visit(const InputTagList<double>& tag) override { setList(tag, {{"type", "number"}}); }
  void visit(const InputTagList<std::string>& tag) override { setList(tag, wordOf(tag)); }
  void visit(const InputTagSpecialOutputValueList& tag) override {
    setList(tag, object({{"accumulator", {{"enum", {"none", "min", "max", "integrate"}}}},
                         {"value", wordOf(tag)}},
                        {"accumulator", "value"}));
  }
  void visit(const InputTagTaggedList<double>& /*tag*/) override {
    schema = object(
        {{"tag", {{"type", "string"}, {"minLength", 1}}}, {"list", arrayOf({{"type", "number"}})}},
        {"tag", "list"});
  }
  void visit(const InputTagCondUsedIf& tag) override {
    condition = &tag.getCondition();
    InputTagVisitor::visit(tag);
  }
  void visit(const InputTagCondRequiredIf& tag) override {
    condition = &tag.getCondition();
    isRequiredOnlyThen = true;
    InputTagVisitor::visit(tag);
  }
  void visit(const InputTagCondExclusive& tag) override { InputTagVisitor::visit(tag); }

  ordered_json schema;
  const Condition* condition = nullptr;
  bool isRequiredOnlyThen = false;

 private:
  template <typename T>
  void setNumber(const InputTagNumber<T>& tag, const char* type) {
    schema = {{"type", type}};
    addRange(tag.getHardRange(), schema);
    const std::string& preset = tag.getPresetValue();
    if (!preset.empty() && !tag.getHardRange().contains(fromText<T>(preset))) {
      // A rule may put the mark for "not given" back.
      schema = {{"anyOf", {std::move(schema), {{"const", fromText<T>(preset)}}}}};
    }
  }

  void setText(const InputTag& tag) {
    schema = {{"type", "string"}};
    for (std::size_t i = 0; i < tag.getNumRestrictedValues(); ++i) {
      schema["enum"].push_back(tag.getRestrictedValue(i));
    }
  }

  static ordered_json wordOf(const InputTagList<std::string>& tag) {
    ordered_json word{{"type", "string"}, {"minLength", 1}};
    if (tag.hasRestrictedValues()) {
      word = {{"enum", tag.getValidEntries()}};
    }
    return word;
  }

  template <typename T>
  void setList(const InputTagList<T>& tag, ordered_json items) {
    schema = arrayOf(std::move(items));
    if (tag.getItemCount() > 0) {
      schema["minItems"] = tag.getItemCount();
    }
    if (tag.getItemCount() != 0) {
      schema["maxItems"] = std::abs(tag.getItemCount());
    }
  }
};

/// Whether a tag that nobody gave is filled in whenever its condition holds. A sibling that is
/// itself filled in later does not count yet when the tag is looked at.
bool isFilledIn(const InputBlock& block, const InputTag& tag, const Condition& condition) {
  if (tag.getDefaultValue().empty() || condition.sibling < 0) {
    return false;
  }
  const InputTag& sibling = block.getLogicalTag(static_cast<std::size_t>(condition.sibling));
  return sibling.getPosition() < tag.getPosition() || sibling.getDefaultValue().empty();
}

/// The rule that a tag is there when its condition holds.
ordered_json requiredThen(const InputTag& tag, const Condition& condition) {
  const std::string sibling(condition.tag);
  ordered_json value{{"enum", condition.values}};
  if (!condition.equals) {
    value = {{"not", {{"const", condition.values.front()}}}};
  }
  return {{"if", {{"properties", {{sibling, std::move(value)}}}, {"required", {sibling}}}},
          {"then", {{"required", {tag.getName()}}}}};
}

ordered_json schemaOf(const InputBlock& block);

void addTags(const InputBlock& block, ordered_json& properties, ordered_json& required,
             ordered_json& rules) {
  for (std::size_t i = 0; i < block.getLogicalNumTags(); ++i) {
    const InputTag& tag = block.getLogicalTag(i);
    ValueSchema value;
    tag.accept(value);
    const bool isMandatory = tag.isMandatoryBySchema();
    if (value.condition == nullptr ? isMandatory || !tag.getDefaultValue().empty()
                                   : isMandatory && !value.isRequiredOnlyThen) {
      required.push_back(tag.getName());
    } else if (value.condition != nullptr && ((isMandatory && value.isRequiredOnlyThen) ||
                                              isFilledIn(block, tag, *value.condition))) {
      rules.push_back(requiredThen(tag, *value.condition));
    }
    ordered_json schema = tag.isRepeatable() ? arrayOf(std::move(value.schema)) : value.schema;
    schema["description"] = tag.getDescription();
    if (!tag.getUnit().empty()) {
      schema["unit"] = tag.getUnit();
    }
    properties[std::string(tag.getName())] = std::move(schema);
  }
}

void addBlocks(const InputBlock& block, ordered_json& properties, ordered_json& required) {
  // What population makes of nothing is always there.
  const std::unique_ptr<InputBlock> instance = block.logicalClone(nullptr);
  instance->populate();
  for (std::size_t i = 0; i < block.getLogicalNumBlocks(); ++i) {
    const InputBlock& child = block.getLogicalBlock(i);
    const std::string name(child.getName());
    if (child.isMandatory() || instance->getNumBlocksNamed(name) > 0) {
      required.push_back(name);
    }
    ordered_json schema = schemaOf(child);
    properties[name] = child.isRepeatable() ? arrayOf(std::move(schema)) : std::move(schema);
  }
}

ordered_json schemaOf(const InputBlock& block) {
  ordered_json properties = ordered_json::object();
  ordered_json required = ordered_json::array();
  ordered_json rules = ordered_json::array();
  addTags(block, properties, required, rules);
  addBlocks(block, properties, required);
  ordered_json schema = object(std::move(properties), std::move(required));
  if (!rules.empty()) {
    schema["allOf"] = std::move(rules);
  }
  std::ostringstream description;
  block.getDescription(description);
  schema["description"] = description.str();
  return schema;
}

/// The logical sub-block `name`, which exists.
const InputBlock& childOf(const InputBlock& block, std::string_view name) {
  return block.getLogicalBlock(static_cast<std::size_t>(block.getLogicalBlockPosition(name)));
}

}  // namespace

ordered_json documentSchema(const InputBlock& root) {
  ordered_json domain = schemaOf(childOf(root, "DOMAIN"));
  // Documents leave the parallel execution out.
  domain["properties"].erase("PARALLEL");
  const ordered_json project = schemaOf(childOf(root, "PROJECT"));
  ordered_json setup =
      object({{"simulation_name", project["properties"]["title"]}, {"KESTMD", std::move(domain)}},
             {"simulation_name", "KESTMD"});
  ordered_json schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                      {"title", "KESTRIX simulation setup"}};
  schema.update(object({{"SETUP", std::move(setup)}}, {"SETUP"}));
  return schema;
}

}  // namespace KESTparse
