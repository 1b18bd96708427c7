/// \file
/// Fuzz target: the text of a value, for each tag of the vocabulary. The first two bytes choose the
/// tag.

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "FuzzRun.h"
#include "JsonEmission.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace {

using Place = std::pair<const KESTparse::InputBlock*, const KESTparse::InputTag*>;

void collect(const KESTparse::InputBlock& block, std::vector<Place>& places) {
  for (const KESTparse::InputTag& tag : block.logicalTags()) {
    places.emplace_back(&block, &tag);
  }
  for (const KESTparse::InputBlock& child : block.logicalBlocks()) {
    collect(child, places);
  }
}

const std::vector<Place>& allTags() {
  static const KESTparse::KestrixInputRoot root;
  static const std::vector<Place> tags = [] {
    std::vector<Place> places;
    collect(root, places);
    return places;
  }();
  return tags;
}

/// Gives the tag a value and takes it away again.
void setAndRemove(const Place& place, std::string_view text) {
  const auto block = place.first->logicalClone(nullptr);
  KESTparse::InputTag& tag = block->getTag(place.second->getName());
  try {
    tag.setRawValue(text);
    nlohmann::json value;
    KESTparse::jsonCallbacks().tag(tag, {}, &value);
    value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  } catch (const KESTparse::InputParseError&) {
  }
  tag.validate();
  block->removeTag(tag);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) {
    return 0;
  }
  fuzz::beginRun();
  const std::vector<Place>& tags = allTags();
  try {
    setAndRemove(tags[(data[0] * std::size_t{256} + data[1]) % tags.size()],
                 fuzz::asText(data, size).substr(2));
  } catch (const KESTparse::Stopped&) {
  }
  return 0;
}
