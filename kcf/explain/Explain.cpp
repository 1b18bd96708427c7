#include "explain/Explain.h"

#include <fmt/format.h>

#include <algorithm>
#include <iostream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <typeindex>
#include <utility>
#include <vector>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/Suggestion.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Example.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/RuleTable.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "explain/Remark.h"

namespace kcf {
namespace {

using KESTparse::CodeFacts;
using KESTparse::InputBlock;
using KESTparse::InputTag;
using KESTparse::Place;
using KESTparse::RuleFacts;
using KESTparse::Severity;

/// A paragraph of at most 80 columns, its lines behind `indent` blanks.
std::string paragraph(std::string_view text, std::size_t indent = 0) {
  constexpr std::size_t columns = 80;
  std::string result;
  std::size_t width = 0;
  for (const std::string& word : KESTparse::split(" \n", text)) {
    const bool isFirst = width == 0;
    if (!isFirst && width + 1 + word.size() > columns) {
      result += '\n';
      width = 0;
    }
    result += width == 0 ? std::string(indent, ' ') : " ";
    width += (width == 0 ? indent : 1) + word.size();
    result += word;
  }
  return result + "\n";
}

std::string indented(std::string_view text) {
  std::string result;
  for (const std::string& line : KESTparse::split("\n", text)) {
    result += "    " + line + "\n";
  }
  return result;
}

std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

/// A tag in the block at a place.
struct TagPlace {
  Place place;
  const InputTag* tag;
};

const InputTag* tagOf(const InputBlock& block, std::string_view name) {
  const int position = block.getLogicalTagPosition(name);
  return position < 0 ? nullptr : &block.getLogicalTag(static_cast<std::size_t>(position));
}

/// Whether a rule is about a tag of the block.
bool isAbout(const RuleFacts& rule, const InputBlock& block, const InputTag& tag) {
  const std::vector<std::string> members = KESTparse::split(" ", rule.members);
  return std::any_of(members.begin(), members.end(), [&](const std::string& member) {
    const int position = block.getTagPositionOfMember(member);
    return position >= 0 && &block.getLogicalTag(static_cast<std::size_t>(position)) == &tag;
  });
}

class Explanations {
 public:
  Explanations() : places_(KESTparse::placesOf(root_)) {}

  /// What there is to tell about `asked`; empty when there is no such thing.
  std::string about(const std::string& asked) {
    if (const CodeFacts* const code = KESTparse::findCode(asked)) {
      return aboutCode(*code);
    }
    std::string text = aboutRule(asked);
    if (!text.empty()) {
      return text;
    }
    const std::string path = asked.starts_with(".../") ? asked.substr(4) : asked;
    const std::vector<Place> blocks = distinct(KESTparse::findPlaces(root_, path));
    if (!blocks.empty()) {
      return aboutBlocks(blocks);
    }
    return aboutTags(findTags(path));
  }

  /// What `asked` may have been meant as, the likeliest first.
  std::vector<std::string> nearest(const std::string& asked) {
    constexpr std::size_t most = 4;
    std::vector<std::string_view> names;
    for (const CodeFacts& code : KESTparse::codeFacts()) {
      names.push_back(code.name);
    }
    std::set<std::string> others;
    for (const Place& place : places_) {
      for (const InputTag& tag : place.block->logicalTags()) {
        others.emplace(tag.getName());
      }
      for (const RuleFacts& rule : KESTparse::rulesOf(*place.block)) {
        others.insert(KESTparse::ruleCode(place.block->getName(), rule.name));
      }
    }
    names.insert(names.end(), others.begin(), others.end());
    std::vector<std::string> found;
    const std::string name(KESTparse::nearestName(asked, names));
    if (!name.empty()) {
      found.push_back(name);
    }
    const std::size_t slash = asked.rfind('/');
    const std::string end = slash == std::string::npos ? "" : asked.substr(slash + 1);
    const std::vector<Place> owners =
        end.empty() ? std::vector<Place>() : KESTparse::findPlaces(root_, blockPart(asked, slash));
    for (const Place& owner : owners) {
      std::vector<std::string_view> tags;
      for (const InputTag& tag : owner.block->logicalTags()) {
        tags.push_back(tag.getName());
      }
      const std::string_view tag = KESTparse::nearestName(end, tags);
      if (!tag.empty()) {
        found.push_back(shortPath(owner) + "/" + std::string(tag));
      }
    }
    for (const std::string& path : KESTparse::nearestPaths(root_, asked)) {
      found.push_back(shortPath(KESTparse::findPlace(root_, path)));
    }
    std::vector<std::string> unique;
    for (std::string& each : found) {
      if (std::find(unique.begin(), unique.end(), each) == unique.end() && unique.size() < most) {
        unique.push_back(std::move(each));
      }
    }
    return unique;
  }

 private:
  static std::string blockPart(const std::string& asked, std::size_t slash) {
    const std::string path = asked.substr(0, slash);
    return path.starts_with(".../") ? path.substr(4) : path;
  }

  /// The places without those whose block is of a class that was there before.
  static std::vector<Place> distinct(std::vector<Place> places) {
    std::set<std::type_index> seen;
    std::vector<Place> result;
    for (Place& place : places) {
      const InputBlock& block = *place.block;
      if (seen.insert(typeid(block)).second) {
        result.push_back(std::move(place));
      }
    }
    return result;
  }

  /// The least of the last names of a path that no other block has.
  std::string shortPath(const Place& place) const {
    std::string path = place.path;
    for (std::size_t slash = path.rfind('/'); slash != std::string::npos && slash > 0;
         slash = path.rfind('/', slash - 1)) {
      const std::string end = path.substr(slash);
      const auto count = std::count_if(places_.begin(), places_.end(), [&end](const Place& other) {
        return other.path.ends_with(end);
      });
      if (count == 1) {
        return end.substr(1);
      }
    }
    return path;
  }

  std::vector<TagPlace> findTags(const std::string& path) const {
    const std::size_t slash = path.rfind('/');
    const std::string name = path.substr(slash == std::string::npos ? 0 : slash + 1);
    const std::vector<Place> owners =
        slash == std::string::npos ? places_ : KESTparse::findPlaces(root_, path.substr(0, slash));
    std::vector<TagPlace> found;
    for (const Place& place : distinct(owners)) {
      if (const InputTag* const tag = tagOf(*place.block, name)) {
        found.push_back({place, tag});
      }
    }
    return found;
  }

  static std::string aboutCode(const CodeFacts& code) {
    std::string text = fmt::format(
        "{} ({}{})\n\n", code.name, code.severity == Severity::error ? "error" : "warning",
        code.origin == KESTparse::Origin::checker ? ", found by kcf check alone" : "");
    text += paragraph(std::string(code.summary) + ".") + "\n" + paragraph(code.meaning);
    if (!code.example.empty()) {
      const std::string_view file = code.exampleOf();
      text += fmt::format("\nExample{}{}:\n\n", file.empty() ? "" : ", in ", file);
      text += indented(code.example);
    }
    if (!code.mended.empty()) {
      text += "\nMended:\n\n" + indented(code.mended);
    }
    return text;
  }

  std::string aboutRule(const std::string& code) const {
    std::string text;
    for (const Place& place : distinct(places_)) {
      for (const RuleFacts& rule : KESTparse::rulesOf(*place.block)) {
        if (KESTparse::ruleCode(place.block->getName(), rule.name) != code) {
          continue;
        }
        text += text.empty() ? fmt::format("{} ({}, a rule of the block {})\n", code,
                                           rule.severity == Severity::error ? "error" : "warning",
                                           place.block->getName())
                             : "";
        text += "\nIn " + shortPath(place) + ":\n" +
                paragraph(KESTparse::withoutValues(rule.sentence) + ".", 2) +
                paragraph("To mend it: " + KESTparse::withoutValues(rule.help) + ".", 2);
        if (!rule.text.empty() && rule.text != "{}") {
          text += paragraph("The converter says: " + KESTparse::withoutValues(rule.text), 2);
        }
      }
    }
    return text;
  }

  std::string aboutBlocks(const std::vector<Place>& blocks) const {
    constexpr std::size_t most = 3;
    std::string text;
    if (blocks.size() <= most) {
      for (const Place& place : blocks) {
        text += (text.empty() ? "" : "\n") + aboutBlock(place);
      }
      return text;
    }
    text = "Several blocks have that name. To know more: kcf explain PATH, where PATH is one of\n";
    for (const Place& place : blocks) {
      std::ostringstream description;
      place.block->getDescription(description);
      text +=
          "\n  " + shortPath(place) + "\n" + paragraph(KESTparse::withSigns(description.str()), 4);
    }
    return text;
  }

  std::string aboutBlock(const Place& place) const {
    const InputBlock& block = *place.block;
    std::ostringstream description;
    block.getDescription(description);
    description << " ";
    block.getLongDescription(description);
    std::string text = fmt::format("{} (block, {})\n\n", shortPath(place), occurrence(block)) +
                       paragraph(KESTparse::withSigns(description.str()));
    if (block.getLogicalNumTags() > 0) {
      text += "\nTags:\n";
    }
    for (const InputTag& tag : block.logicalTags()) {
      text +=
          fmt::format("  {}{}\n", tag.getName(), tag.isMandatoryBySchema() ? " (mandatory)" : "");
      text += paragraph(remarkOf(tag), 6);
    }
    if (block.getLogicalNumBlocks() > 0) {
      text += "\nBlocks:\n";
    }
    for (const InputBlock& child : block.logicalBlocks()) {
      text += fmt::format("  {} ({})\n", child.getName(), occurrence(child));
    }
    text += rulesText(block, nullptr);
    return text + "\nExample:\n\n" + indented(KESTparse::exampleOf(place));
  }

  /// The rules of a block, or those about one of its tags.
  static std::string rulesText(const InputBlock& block, const InputTag* tag) {
    std::string text;
    for (const RuleFacts& rule : KESTparse::rulesOf(block)) {
      if (tag != nullptr && !isAbout(rule, block, *tag)) {
        continue;
      }
      text += text.empty() ? "\nRules:\n" : "";
      text += fmt::format("  {} ({})\n", KESTparse::ruleCode(block.getName(), rule.name),
                          rule.severity == Severity::error ? "error" : "warning") +
              paragraph(KESTparse::withoutValues(rule.sentence), 6);
    }
    return text;
  }

  std::string aboutTags(const std::vector<TagPlace>& tags) const {
    constexpr std::size_t most = 6;
    std::string text;
    if (tags.size() > most) {
      text =
          "Many blocks have such a tag. To know more: kcf explain PATH, where PATH is one of\n\n";
      for (const auto& [place, tag] : tags) {
        text += fmt::format("  {}/{}\n", shortPath(place), tag->getName());
      }
      return text;
    }
    for (const auto& [place, tag] : tags) {
      text += (text.empty() ? "" : "\n") + aboutTag(place, *tag);
    }
    return text;
  }

  std::string aboutTag(const Place& place, const InputTag& tag) const {
    std::string text = fmt::format("{}/{} (tag{}{})\n\n", shortPath(place), tag.getName(),
                                   tag.isMandatoryBySchema() ? ", mandatory" : "",
                                   tag.isRepeatable() ? ", may stand more than once" : "") +
                       paragraph(KESTparse::withSigns(std::string(tag.getDescription()))) + "\n" +
                       paragraph("Value: " + remarkOf(tag) + ".");
    for (const KESTparse::TagRule& rule : KESTparse::traitsOf(tag).rules) {
      text += paragraph("Condition: " + KESTparse::sentenceOf(rule, tag, quoted, quoted) + ".");
    }
    return text + rulesText(*place.block, &tag);
  }

  KESTparse::KestrixInputRoot root_;
  std::vector<Place> places_;
};

std::vector<std::string> codes() {
  std::vector<std::string> names;
  for (const CodeFacts& code : KESTparse::codeFacts()) {
    names.emplace_back(code.name);
  }
  return names;
}

/// All codes with one line each.
std::string listOfCodes() {
  std::string text;
  std::string_view group;
  for (const CodeFacts& code : KESTparse::codeFacts()) {
    if (code.group != group) {
      text += fmt::format("{}{}:\n", text.empty() ? "" : "\n", code.group);
      group = code.group;
    }
    text += fmt::format("  {:<24}{}\n", code.name, code.summary);
  }
  return text +
         "\nRules of blocks have the code of their block and a name of their own, such as\n"
         "initial/missing-file; kcf explain BLOCK lists those of a block.\n";
}

}  // namespace

Verb explainVerb() {
  return {
      "explain",
      "Know the vocabulary",
      "Tell what a code of kcf check means, or what a block or a tag is",
      R"(A block is named by its path or the end of it, such as FRICTION or
KESTPLANE_2D/HYDRAULICS/FRICTION, a tag likewise, such as .../FRICTION/type.
Without a name, all codes are listed.)",
      {{.name = "NAME", .help = "A code, a block or a tag", .value = "NAME", .suggestions = codes}},
      [](const Arguments& arguments) {
        if (!arguments.has("NAME")) {
          std::cout << listOfCodes();
          return status::done;
        }
        const std::string name = arguments.value("NAME");
        Explanations explanations;
        const std::string text = explanations.about(name);
        if (text.empty()) {
          throw std::runtime_error(
              fmt::format("there is no code, block or tag '{}'. Did you mean {}?", name,
                          fmt::join(explanations.nearest(name), ", ")));
        }
        std::cout << text;
        return status::done;
      },
      {{"Know what a code means", "kcf explain unknown-tag"},
       {"Read about a tag", "kcf explain KESTPLANE_2D/HYDRAULICS/FRICTION/type"}}};
}

}  // namespace kcf
