#include "fromjson/CommandFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/Suggestion.h"
#include "KESTparse/document/Edits.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagEnum.h"
#include "KESTparse/framework/InputTagList.h"
#include "KESTparse/framework/InputTagNumber.h"
#include "KESTparse/framework/InputTagString.h"
#include "KESTparse/framework/InputTagVisitor.h"
#include "KESTparse/framework/Scanner.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace kcf {
namespace {

using KESTparse::InputBlock;
using KESTparse::InputTag;
using nlohmann::json;

std::string below(const std::string& pointer, std::string_view key) {
  return (json::json_pointer(pointer) / std::string(key)).to_string();
}

/// The words of a list that end where white space or a parenthesis does.
bool isListItem(std::string_view text) {
  return !text.empty() && text.find_first_of(" \t()") == std::string_view::npos &&
         KESTparse::isWritableValue(text);
}

/// A number as people write it.
std::string numberText(const json& number) {
  std::string text = number.dump();
  if (text.ends_with(".0")) {
    text.resize(text.size() - 2);
  }
  return text;
}

/// Writes the value of a tag by its kind.
class ValueText : public KESTparse::InputTagVisitor {
 public:
  ValueText(const json& value, std::string pointer)
      : value_(&value), pointer_(std::move(pointer)) {}
  using InputTagVisitor::visit;

  void visit(const KESTparse::InputTagNumber<int>& /*tag*/) override { text = integer(*value_); }
  void visit(const KESTparse::InputTagNumber<double>& tag) override {
    text = real(*value_);
    isDefault_ = [&tag](const std::string& own) {
      return KESTparse::stringToDouble(own) == KESTparse::stringToDouble(tag.getDefaultValue());
    };
  }
  void visit(const KESTparse::InputTagSlope& /*tag*/) override { text = slope(*value_); }
  void visit(const KESTparse::InputTagBoolean& /*tag*/) override { text = word(*value_); }
  void visit(const KESTparse::InputTagString& /*tag*/) override { text = word(*value_); }
  void visit(const KESTparse::InputTagStringStd& /*tag*/) override { text = word(*value_); }
  void visit(const KESTparse::InputTagFile& /*tag*/) override { text = word(*value_); }
  void visit(const KESTparse::InputTagSeriesFile& /*tag*/) override { text = word(*value_); }
  void visit(const KESTparse::InputTagPosition& /*tag*/) override { text = word(*value_); }
  void visit(const KESTparse::InputTagEnumBase& /*tag*/) override { text = word(*value_); }
  void visit(const KESTparse::InputTagList<int>& /*tag*/) override {
    list(*value_, &ValueText::integer);
  }
  void visit(const KESTparse::InputTagList<double>& /*tag*/) override {
    list(*value_, &ValueText::real);
  }
  void visit(const KESTparse::InputTagList<std::string>& /*tag*/) override {
    list(*value_, &ValueText::item);
  }
  void visit(const KESTparse::InputTagSpecialOutputValueList& /*tag*/) override {
    list(*value_, &ValueText::outputValue);
  }
  void visit(const KESTparse::InputTagTaggedList<double>& /*tag*/) override {
    requireKeys(*value_, {"list", "tag"});
    const std::string name = item(value_->at("tag"));
    pointer_ = below(pointer_, "list");
    list(value_->at("list"), &ValueText::real);
    text = name + ":" + text;
  }

  /// Whether the value is what `tag` has when it is left out.
  [[nodiscard]] bool isDefaultOf(const InputTag& tag) const {
    const std::string& preset = tag.getDefaultValue();
    return !preset.empty() &&
           (isDefault_ ? isDefault_(text)
                       : KESTparse::split(" \t()", preset) == KESTparse::split(" \t()", text));
  }

  std::string text;

 private:
  [[noreturn]] void refuse(const std::string& reason) const {
    throw DocumentFault(pointer_, reason);
  }

  [[noreturn]] void refuseType(const json& value, std::string_view wanted) const {
    constexpr std::size_t longest = 40;
    const std::string shown = value.dump(-1, ' ', true);
    refuse(
        fmt::format("there must be {}, not {}", wanted,
                    value.is_structured() && shown.size() > longest ? value.type_name() : shown));
  }

  std::string integer(const json& value) {
    const bool isWhole =
        value.is_number_integer() ||
        (value.is_number_float() && std::trunc(value.get<double>()) == value.get<double>());
    if (!isWhole) {
      refuseType(value, "a whole number");
    }
    const auto number = value.get<double>();
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
      refuse(fmt::format("{} is too large for a whole number", value.dump()));
    }
    return std::to_string(static_cast<int>(number));
  }

  std::string real(const json& value) {
    if (!value.is_number()) {
      refuseType(value, "a number");
    }
    return numberText(value);
  }

  /// A slope is divided when it is read and multiplied when it is written, which does not always
  /// give the same number.
  std::string slope(const json& value) {
    constexpr double perMill = 1000.0;
    constexpr int reach = 4;
    real(value);
    const auto wanted = value.get<double>();
    double up = wanted;
    double down = wanted;
    for (int i = 0; i <= reach; ++i) {
      for (const double tried : {up, down}) {
        if (tried / perMill * perMill == wanted) {
          return numberText(tried);
        }
      }
      up = std::nextafter(up, std::numeric_limits<double>::infinity());
      down = std::nextafter(down, -std::numeric_limits<double>::infinity());
    }
    return numberText(wanted);
  }

  std::string word(const json& value) {
    if (!value.is_string()) {
      refuseType(value, "a text");
    }
    auto content = value.get<std::string>();
    if (!content.empty() && !KESTparse::isWritableValue(content)) {
      refuse(fmt::format("no command file can spell {}", value.dump()));
    }
    return content;
  }

  std::string item(const json& value) {
    std::string content = word(value);
    if (!isListItem(content)) {
      refuse(fmt::format("no command file can spell {} as an item of a list", value.dump()));
    }
    return content;
  }

  std::string outputValue(const json& value) {
    requireKeys(value, {"accumulator", "value"});
    const std::string accumulator = item(value.at("accumulator"));
    const std::string inner = item(value.at("value"));
    return accumulator == "none" ? inner : fmt::format("{}[{}]", accumulator, inner);
  }

  void requireKeys(const json& value, std::initializer_list<std::string_view> keys) const {
    const bool hasAll = value.is_object() && value.size() == keys.size() &&
                        std::all_of(keys.begin(), keys.end(),
                                    [&](std::string_view key) { return value.contains(key); });
    if (!hasAll) {
      refuseType(value, fmt::format("an object with the keys {}", fmt::join(keys, ", ")));
    }
  }

  void list(const json& value, std::string (ValueText::*write)(const json&)) {
    if (!value.is_array() || value.empty()) {
      refuseType(value, "a list with at least one item");
    }
    const std::string own = pointer_;
    text = "(";
    for (std::size_t i = 0; i < value.size(); ++i) {
      pointer_ = own + "/" + std::to_string(i);
      text += " " + (this->*write)(value[i]);
    }
    pointer_ = own;
    text += " )";
  }

  const json* value_;
  std::string pointer_;
  std::function<bool(const std::string&)> isDefault_;
};

const InputBlock& childOf(const InputBlock& block, std::string_view name) {
  return block.getLogicalBlock(static_cast<std::size_t>(block.getLogicalBlockPosition(name)));
}

void requireObject(const json& value, const std::string& pointer) {
  if (!value.is_object()) {
    throw DocumentFault(pointer, fmt::format("there must be an object, not {}", value.type_name()));
  }
}

/// Writes block by block.
class CommandFileWriter {
 public:
  explicit CommandFileWriter(const WritingOptions& options) : options_(options) {}

  void writeProject(const json& title, const InputBlock& project) {
    constexpr std::string_view pointer = "/SETUP/simulation_name";
    std::vector<std::string_view> others;
    open("PROJECT", "/SETUP");
    for (std::size_t i = 0; i < project.getLogicalNumTags(); ++i) {
      const InputTag& tag = project.getLogicalTag(i);
      if (tag.getName() == "title") {
        ValueText value(title, std::string(pointer));
        tag.accept(value);
        add(tag.getName(), value.text, std::string(pointer));
      } else {
        others.push_back(tag.getName());
      }
    }
    file.text += fmt::format("// A document does not carry {}.\n}}\n", fmt::join(others, ", "));
  }

  void writeDomain(const json& value, const InputBlock& domain) {
    const std::string pointer = "/SETUP/KESTMD";
    requireObject(value, pointer);
    if (value.contains("PARALLEL")) {
      throw DocumentFault(below(pointer, "PARALLEL"), "a document does not carry this block");
    }
    open("DOMAIN", pointer);
    file.text += "// A document does not carry the block PARALLEL.\n";
    writeContent(value, domain, pointer);
    file.text += "}\n";
  }

  WrittenFile file;

 private:
  void open(std::string_view name, const std::string& pointer) {
    file.text += fmt::format("{} {{\n", name);
    file.pointers.push_back(pointer);
  }

  void add(std::string_view name, const std::string& value, const std::string& pointer) {
    file.text += fmt::format("{} = {}\n", name, value);
    file.pointers.push_back(pointer);
  }

  [[nodiscard]] bool mayLeaveOut(const std::string& pointer) const {
    return options_.isMinimal && !options_.kept.contains(pointer);
  }

  void requireKnownKeys(const json& value, const InputBlock& block, const std::string& pointer) {
    for (const auto& [key, content] : value.items()) {
      if (block.getLogicalTagPosition(key) >= 0 || block.getLogicalBlockPosition(key) >= 0) {
        continue;
      }
      std::vector<std::string_view> known;
      for (std::size_t i = 0; i < block.getLogicalNumTags(); ++i) {
        known.push_back(block.getLogicalTag(i).getName());
      }
      for (std::size_t i = 0; i < block.getLogicalNumBlocks(); ++i) {
        known.push_back(block.getLogicalBlock(i).getName());
      }
      const std::string_view nearest = KESTparse::nearestName(key, known);
      throw DocumentFault(
          below(pointer, key),
          fmt::format("{} has no tag and no block of that name{}", block.getName(),
                      nearest.empty() ? "" : fmt::format(". Did you mean '{}'?", nearest)));
    }
  }

  void writeContent(const json& value, const InputBlock& block, const std::string& pointer) {
    requireKnownKeys(value, block, pointer);
    for (std::size_t i = 0; i < block.getLogicalNumTags(); ++i) {
      const InputTag& tag = block.getLogicalTag(i);
      const auto place = value.find(tag.getName());
      if (place != value.end()) {
        eachOf(*place, below(pointer, tag.getName()), tag.isRepeatable(),
               [&](const json& one, const std::string& at) { writeTag(one, tag, at); });
      }
    }
    std::vector<const InputBlock*> children;
    for (std::size_t i = 0; i < block.getLogicalNumBlocks(); ++i) {
      children.push_back(&block.getLogicalBlock(i));
    }
    if (options_.hasGeometryBehind) {
      std::stable_partition(children.begin(), children.end(),
                            [](const InputBlock* child) { return child->getName() != "GEOMETRY"; });
    }
    for (const InputBlock* const child : children) {
      const auto place = value.find(child->getName());
      if (place != value.end()) {
        eachOf(*place, below(pointer, child->getName()), child->isRepeatable(),
               [&](const json& one, const std::string& at) { writeBlock(one, *child, at); });
      }
    }
  }

  /// Does something for each instance of a node.
  template <class Write>
  static void eachOf(const json& value, const std::string& pointer, bool isRepeatable,
                     const Write& write) {
    if (!isRepeatable) {
      write(value, pointer);
      return;
    }
    if (!value.is_array() || value.empty()) {
      throw DocumentFault(pointer, "there must be a list with at least one item");
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
      write(value[i], pointer + "/" + std::to_string(i));
    }
  }

  void writeTag(const json& value, const InputTag& tag, const std::string& pointer) {
    ValueText text(value, pointer);
    tag.accept(text);
    const bool isDefault = text.isDefaultOf(tag);
    if (isDefault && (mayLeaveOut(pointer) || !KESTparse::isWritableName(tag.getName()))) {
      return;
    }
    if (!KESTparse::isWritableName(tag.getName())) {
      throw DocumentFault(pointer, fmt::format("no command file can name the tag '{}', which has "
                                               "its default alone: {}",
                                               tag.getName(), tag.getDefaultValue()));
    }
    add(tag.getName(), text.text, pointer);
  }

  void writeBlock(const json& value, const InputBlock& block, const std::string& pointer) {
    requireObject(value, pointer);
    const std::size_t begin = file.text.size();
    const std::size_t count = file.pointers.size();
    open(block.getName(), pointer);
    writeContent(value, block, pointer);
    if (file.pointers.size() == count + 1 && !block.isRepeatable() && mayLeaveOut(pointer)) {
      file.text.resize(begin);
      file.pointers.resize(count);
      return;
    }
    file.text += "}\n";
  }

  const WritingOptions& options_;
};

}  // namespace

WrittenFile written(const json& document, const KESTparse::KestrixInputRoot& schema,
                    const WritingOptions& options) {
  requireObject(document, "");
  for (const auto& [key, value] : document.items()) {
    // Editors find the schema by a key of the document.
    if (key != "SETUP" && key != "$schema") {
      throw DocumentFault(below("", key), "a document has the key 'SETUP' alone");
    }
  }
  if (!document.contains("SETUP")) {
    throw DocumentFault("", "the key 'SETUP' is missing: this is no document of a setup");
  }
  const json& setup = document.at("SETUP");
  requireObject(setup, "/SETUP");
  for (const auto& [key, value] : setup.items()) {
    if (key != "simulation_name" && key != "KESTMD") {
      throw DocumentFault(below("/SETUP", key),
                          "a setup has the keys 'KESTMD' and 'simulation_name' alone");
    }
  }
  for (const char* const key : {"simulation_name", "KESTMD"}) {
    if (!setup.contains(key)) {
      throw DocumentFault("/SETUP", fmt::format("the key '{}' is missing", key));
    }
  }
  CommandFileWriter writer(options);
  writer.writeProject(setup.at("simulation_name"), childOf(schema, "PROJECT"));
  writer.writeDomain(setup.at("KESTMD"), childOf(schema, "DOMAIN"));
  return std::move(writer.file);
}

}  // namespace kcf
