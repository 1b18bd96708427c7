#include "JsonEmission.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagEnum.h"
#include "KESTparse/framework/InputTagList.h"
#include "KESTparse/framework/InputTagNumber.h"
#include "KESTparse/framework/InputTagString.h"
#include "KESTparse/framework/InputTagVisitor.h"

namespace KESTparse {
namespace {

using nlohmann::json;

/// The value of a tag by its kind. Words stay words: there is no JSON boolean.
class ValueOf : public InputTagVisitor {
 public:
  explicit ValueOf(json& value) : value_(&value) {}
  using InputTagVisitor::visit;

  void visit(const InputTagNumber<int>& tag) override { *value_ = tag.asInt(); }
  void visit(const InputTagNumber<double>& tag) override { *value_ = tag.asDouble(); }
  void visit(const InputTagSlope& tag) override { *value_ = tag.asDouble() * 1000.0; }
  void visit(const InputTagBoolean& tag) override { *value_ = tag.getRawText(); }
  void visit(const InputTagString& tag) override { *value_ = tag.getRawText(); }
  void visit(const InputTagStringStd& tag) override { *value_ = tag.getRawText(); }
  void visit(const InputTagFile& tag) override { *value_ = tag.getRawText(); }
  void visit(const InputTagSeriesFile& tag) override { *value_ = tag.getRawText(); }
  void visit(const InputTagPosition& tag) override { *value_ = tag.getRawText(); }
  void visit(const InputTagEnumBase& tag) override { *value_ = tag.getRawText(); }
  void visit(const InputTagList<int>& tag) override { *value_ = tag.getValues(); }
  void visit(const InputTagList<double>& tag) override { *value_ = tag.getValues(); }
  void visit(const InputTagList<std::string>& tag) override { *value_ = tag.getValues(); }
  void visit(const InputTagSpecialOutputValueList& tag) override {
    *value_ = json::array();
    for (const std::string& item : tag.getValues()) {
      const OutputItem parts = splitOutputItem(item);
      value_->push_back({{"accumulator", parts.accumulator.empty() ? "none" : parts.accumulator},
                         {"value", parts.value}});
    }
  }
  void visit(const InputTagTaggedList<double>& tag) override {
    *value_ = {{"tag", tag.getListName()}, {"list", tag.getValues()}};
  }

 private:
  json* value_;
};

/// The place in `parent` for a node called `name`.
json& placeFor(json& parent, const std::string& name, bool repeatable) {
  json& place = parent[name];
  if (!repeatable) {
    return place;
  }
  place.push_back(json::object());
  return place.back();
}

/// The value under `key`, taken out of `parent`; an empty object when it is not there.
json extract(json& parent, const char* key) {
  const auto it = parent.find(key);
  if (it == parent.end()) {
    return json::object();
  }
  json value = std::move(*it);
  parent.erase(it);
  return value;
}

}  // namespace

TreeCallbacks jsonCallbacks() {
  return {[](const InputBlock&, const std::vector<std::string>&, json* target) {
            if (target->is_null()) {
              *target = json::object();
            }
          },
          [](const InputTag& tag, const std::vector<std::string>&, json* target) {
            ValueOf visitor(*target);
            tag.accept(visitor);
          }};
}

void walkTree(const InputBlock& root, std::vector<std::string>& path, json& target,
              const TreeCallbacks& callbacks) {
  callbacks.block(root, path, &target);
  for (const InputTag& tag : root.tags()) {
    path.emplace_back(tag.getName());
    callbacks.tag(tag, path, &placeFor(target, path.back(), tag.isRepeatable()));
    path.pop_back();
  }
  for (const InputBlock& block : root.blocks()) {
    path.emplace_back(block.getName());
    walkTree(block, path, placeFor(target, path.back(), block.isRepeatable()), callbacks);
    path.pop_back();
  }
}

json buildDocument(json walked) {
  json setup = json::object();
  setup["simulation_name"] = extract(walked, "PROJECT").value("title", "unnamed_project");
  json domain = extract(walked, "DOMAIN");
  domain.erase("PARALLEL");
  setup["KESTMD"] = std::move(domain);
  json document = json::object();
  document["SETUP"] = std::move(setup);
  return document;
}

json documentOf(const InputBlock& root) {
  json walked = json::object();
  std::vector<std::string> path;
  walkTree(root, path, walked, jsonCallbacks());
  return buildDocument(std::move(walked));
}

}  // namespace KESTparse
