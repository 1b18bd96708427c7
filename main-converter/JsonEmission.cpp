#include "JsonEmission.h"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <type_traits>
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
  void visit(const InputTagBoolean& tag) override { *value_ = tag.getRawValue(); }
  void visit(const InputTagString& tag) override { *value_ = tag.getRawValue(); }
  void visit(const InputTagStringStd& tag) override { *value_ = tag.getRawValue(); }
  void visit(const InputTagFile& tag) override { *value_ = tag.getRawValue(); }
  void visit(const InputTagSeriesFile& tag) override { *value_ = tag.getRawValue(); }
  void visit(const InputTagPosition& tag) override { *value_ = tag.getRawValue(); }
  void visit(const InputTagEnumBase& tag) override { *value_ = tag.getRawValue(); }
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

/// Where the library prints to: thousands of its small writes make one to the stream.
class BufferedWriter : public nlohmann::detail::output_adapter_protocol<char> {
 public:
  explicit BufferedWriter(std::ostream& out) : out_(&out) { buffer_.reserve(size); }

  void write_character(char c) override { write_characters(&c, 1); }
  void write_characters(const char* text, std::size_t length) override {
    if (length > size - buffer_.size()) {
      flush();
    }
    if (length > size) {
      out_->write(text, static_cast<std::streamsize>(length));
    } else {
      buffer_.append(text, length);
    }
  }

  void flush() {
    out_->write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
  }

 private:
  static constexpr std::size_t size = std::size_t{1} << 16;

  std::ostream* out_;
  std::string buffer_;
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

namespace {

/// Walks the tree below `root`; an `InputBlock` that may be changed loses each block behind it.
template <class Block>
void walk(Block& root, std::vector<std::string>& path, json& target,
          const TreeCallbacks& callbacks) {
  callbacks.block(root, path, &target);
  for (std::size_t i = 0; i < root.getNumTags(); ++i) {
    const InputTag& tag = root.getTag(i);
    path.emplace_back(tag.getName());
    callbacks.tag(tag, path, &placeFor(target, path.back(), tag.isRepeatable()));
    path.pop_back();
  }
  for (std::size_t i = 0; i < root.getNumBlocks(); ++i) {
    Block& block = root.getBlock(i);
    path.emplace_back(block.getName());
    walk(block, path, placeFor(target, path.back(), block.isRepeatable()), callbacks);
    path.pop_back();
    if constexpr (!std::is_const_v<Block>) {
      root.dropBlock(i);
    }
  }
}

}  // namespace

void walkTree(const InputBlock& root, std::vector<std::string>& path, json& target,
              const TreeCallbacks& callbacks) {
  walk(root, path, target, callbacks);
}

json takeApart(InputBlock& root) {
  json walked = json::object();
  std::vector<std::string> path;
  walk(root, path, walked, jsonCallbacks());
  return walked;
}

void requireUtf8(const json& document) {
  if (document.is_object()) {
    for (const auto& [name, value] : document.get_ref<const json::object_t&>()) {
      requireUtf8(value);
    }
  } else if (document.is_array()) {
    for (const json& value : document.get_ref<const json::array_t&>()) {
      requireUtf8(value);
    }
  } else if (document.is_string()) {
    const auto& text = document.get_ref<const std::string&>();
    if (std::any_of(text.begin(), text.end(), [](char c) { return (c & '\x80') != 0; })) {
      static_cast<void>(document.dump());
    }
  }
}

void print(const json& document, std::ostream& out) {
  const auto writer = std::make_shared<BufferedWriter>(out);
  nlohmann::detail::serializer<json> serializer(writer, ' ', json::error_handler_t::strict);
  constexpr unsigned indent = 2;
  serializer.dump(document, true, false, indent);
  writer->flush();
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

}  // namespace KESTparse
