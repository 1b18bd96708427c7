#include "vocabulary/Vocabulary.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

using nlohmann::ordered_json;

ordered_json describe(const InputTag& tag) {
  return {{"name", tag.getName()},
          {"type", tag.getTypeName()},
          {"mandatory", tag.isMandatoryBySchema()},
          {"repeatable", tag.isRepeatable()},
          {"default", tag.getDefaultValue()},
          {"preset", tag.getPresetValue()},
          {"unit", tag.getUnit()},
          {"constraint", tag.getConstraintDescription()},
          {"allowedValues", allowedValuesOf(tag)},
          {"validEntries", traitsOf(tag).entries},
          {"description", tag.getDescription()}};
}

void describe(const InputBlock& block, const std::string& path, ordered_json& blocks) {
  std::ostringstream description;
  block.getDescription(description);
  ordered_json subBlocks = ordered_json::array();
  for (std::size_t i = 0; i < block.getLogicalNumBlocks(); ++i) {
    subBlocks.push_back(block.getLogicalBlock(i).getName());
  }
  ordered_json tags = ordered_json::array();
  for (std::size_t i = 0; i < block.getLogicalNumTags(); ++i) {
    tags.push_back(describe(block.getLogicalTag(i)));
  }
  blocks.push_back({{"path", path.empty() ? "/" : path},
                    {"name", block.getName()},
                    {"mandatory", block.isMandatory()},
                    {"repeatable", block.isRepeatable()},
                    {"description", description.str()},
                    {"subBlocks", std::move(subBlocks)},
                    {"tags", std::move(tags)}});
  for (std::size_t i = 0; i < block.getLogicalNumBlocks(); ++i) {
    const InputBlock& child = block.getLogicalBlock(i);
    describe(child, path + "/" + std::string(child.getName()), blocks);
  }
}

}  // namespace

ordered_json vocabulary(const InputBlock& root) {
  ordered_json blocks = ordered_json::array();
  describe(root, "", blocks);
  return {{"blocks", std::move(blocks)}};
}

}  // namespace KESTparse

namespace kcf {

Verb vocabularyVerb() {
  return {"vocabulary",
          "Know the vocabulary",
          "Print all blocks and tags with what holds for them, as JSON",
          R"(The blocks stand depth first, each with its path, its sub-blocks and its tags;
a tag tells its type, default, unit, range and conditions.)",
          {},
          [](const Arguments&) {
            std::cout << KESTparse::vocabulary(KESTparse::KestrixInputRoot()).dump(2) << "\n";
            return status::done;
          },
          {{"List the paths of all blocks", "kcf vocabulary | jq -r '.blocks[].path'"}}};
}

}  // namespace kcf
