#include "language-server/Completion.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/vocabulary/Example.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "language-server/Describe.h"

namespace kcf::server {

using KESTparse::InputBlock;
using KESTparse::InputTag;
using KESTparse::Place;
using KESTparse::TagRule;
using KESTparse::ValueKind;

namespace {

/// The kinds of items, by the numbers of the protocol.
enum Kind : std::uint8_t {
  block = 9,
  tag = 10,
  value = 12,
  file = 17,
  name = 18,
  folder = 19,
  choice = 20,
};

/// How soon an item is shown.
enum Rank : std::uint8_t { needed, likely, optional, unused };

constexpr int snippetFormat = 2;

/// Collects the items of one answer.
class Items {
 public:
  explicit Items(const Typing& typing) : typing_(&typing) {}

  /// Adds an item; `text` is a snippet where the client takes them.
  json& add(Kind kind, const std::string& label, Rank rank, std::string text) {
    // The byte behind a brace belongs to no name.
    if (typing_->cursor.stands == Cursor::Stands::inName && typing_->cursor.followsBrace) {
      text.insert(0, " ");
    }
    items_.push_back({{"label", label},
                      {"kind", static_cast<int>(kind)},
                      {"sortText", fmt::format("{}{:04}", static_cast<int>(rank), items_.size())},
                      {"filterText", label},
                      {"textEdit", {{"range", typing_->range}, {"newText", std::move(text)}}}});
    return items_.back();
  }

  json take() { return {{"isIncomplete", false}, {"items", std::move(items_)}}; }

 private:
  const Typing* typing_;
  json items_ = json::array();
};

/// A text as it stands in a snippet.
std::string escaped(std::string_view text, std::string_view special = "\\$}") {
  std::string result;
  for (const char c : text) {
    if (special.find(c) != std::string_view::npos) {
      result += '\\';
    }
    result += c;
  }
  return result;
}

/// Writes tags and blocks with places to fill in, or without them.
class SnippetWriter {
 public:
  explicit SnippetWriter(bool hasPlaces) : hasPlaces_(hasPlaces) {}

  /// A value, of which `sample` is one.
  std::string value(const InputTag& tag, const std::string& sample) {
    if (!hasPlaces_) {
      return sample;
    }
    const std::vector<std::string> choices = KESTparse::allowedValuesOf(tag);
    if (choices.empty()) {
      return fmt::format("${{{}:{}}}", ++last_, escaped(sample));
    }
    std::string list;
    // The sample comes first, since the client fills that in.
    list = escaped(sample, "\\$},|");
    for (const std::string& each : choices) {
      list += each == sample ? "" : "," + escaped(each, "\\$},|");
    }
    return fmt::format("${{{}|{}|}}", ++last_, list);
  }

  /// A block with all that it must hold.
  std::string block(const InputBlock& master, const std::string& indent) {
    std::string text = std::string(master.getName()) + " {\n";
    bool isEmpty = true;
    for (const auto& [tag, sample] : KESTparse::neededTags(master)) {
      text += fmt::format("{}  {} = {}\n", indent, tag->getName(), value(*tag, sample));
      isEmpty = false;
    }
    for (std::size_t i = 0; i < master.getLogicalNumBlocks(); ++i) {
      const InputBlock& child = master.getLogicalBlock(i);
      if (child.isMandatory()) {
        text += indent + "  " + block(child, indent + "  ") + "\n";
        isEmpty = false;
      }
    }
    if (isEmpty) {
      text += hasPlaces_ ? indent + "  $0\n" : "";
    }
    return text + indent + "}";
  }

 private:
  bool hasPlaces_;
  int last_ = 0;
};

/// What is known of the tags of the block at the cursor.
class Siblings {
 public:
  Siblings(const Typing& typing, const Place& place) : typing_(&typing), place_(place) {
    for (const auto& [tag, written] : typing.cursor.tags) {
      for (const Need& need : typing.session->supplement.needs(place.path, written)) {
        needs_.insert(need.begin(), need.end());
      }
    }
  }

  [[nodiscard]] bool isGiven(std::string_view tagName) const {
    return typing_->cursor.tags.contains(std::string(tagName));
  }

  /// How likely a tag is wanted; nothing for one that must not stand there.
  [[nodiscard]] std::optional<Rank> rankOf(const InputTag& tag) const {
    const std::string tagName(tag.getName());
    if (isGiven(tagName) && !tag.isRepeatable()) {
      return std::nullopt;
    }
    bool isNeeded = tag.isMandatoryBySchema() && tag.getDefaultValue().empty();
    bool isConditional = false;
    for (const TagRule& rule : KESTparse::traitsOf(tag).rules) {
      if (rule.kind == TagRule::Kind::exclusive) {
        if (isGiven(rule.other)) {
          return std::nullopt;
        }
        continue;
      }
      if (!holds(*rule.condition)) {
        return Rank::unused;
      }
      isConditional = true;
    }
    isNeeded = isNeeded || needs_.contains(tagName);
    return isNeeded ? Rank::needed : isConditional ? Rank::likely : Rank::optional;
  }

 private:
  [[nodiscard]] bool holds(const KESTparse::Condition& condition) const {
    if (condition.sibling < 0) {
      return false;
    }
    const auto given = typing_->cursor.tags.find(std::string(condition.tag));
    const std::string& written =
        given != typing_->cursor.tags.end()
            ? given->second
            : place_.block->getLogicalTag(static_cast<std::size_t>(condition.sibling))
                  .getDefaultValue();
    return condition.isMet(written);
  }

  const Typing* typing_;
  Place place_;
  std::set<std::string> needs_;
};

void addTags(const Typing& typing, const Place& place, Items& items) {
  const Siblings siblings(typing, place);
  const bool takesSnippets = typing.session->takesSnippets;
  for (std::size_t i = 0; i < place.block->getLogicalNumTags(); ++i) {
    const InputTag& each = place.block->getLogicalTag(i);
    const std::optional<Rank> rank = siblings.rankOf(each);
    if (!rank) {
      continue;
    }
    std::string text = std::string(each.getName()) + " = ";
    if (takesSnippets) {
      const std::vector<std::string> choices = KESTparse::allowedValuesOf(each);
      const std::string& preset = each.getDefaultValue();
      text = escaped(text) +
             (choices.empty() && preset.empty()
                  ? std::string("$0")
                  : SnippetWriter(true).value(each, preset.empty() ? choices.front() : preset));
    }
    json& item = items.add(Kind::tag, std::string(each.getName()), *rank, std::move(text));
    item["insertTextFormat"] = takesSnippets ? snippetFormat : 1;
    item["detail"] = fmt::format("{}{}{}", each.getTypeName(), each.getUnit().empty() ? "" : " ",
                                 each.getUnit());
    item["data"] = {{"path", place.path}, {"tag", each.getName()}};
  }
}

void addBlocks(const Typing& typing, const Place& place, Items& items) {
  for (std::size_t i = 0; i < place.block->getLogicalNumBlocks(); ++i) {
    const InputBlock& each = place.block->getLogicalBlock(i);
    const std::string blockName(each.getName());
    const bool isGiven = typing.cursor.blocks.contains(blockName);
    if (isGiven && !each.isRepeatable()) {
      continue;
    }
    const bool takesSnippets = typing.session->takesSnippets;
    json& item = items.add(Kind::block, blockName,
                           each.isMandatory() && !isGiven ? Rank::needed : Rank::optional,
                           SnippetWriter(takesSnippets).block(each, ""));
    item["insertTextFormat"] = takesSnippets ? snippetFormat : 1;
    constexpr int adjustIndentation = 2;
    item["insertTextMode"] = adjustIndentation;
    item["detail"] = "block, " + KESTparse::occurrence(each);
    item["data"] = {{"path", KESTparse::pathOf(place.path, each)}};
  }
}

/// The endings of the files that a tag names, the usual one first; empty where any will do.
std::vector<std::string> endingsOf(const std::string& path, const InputTag& each) {
  if (KESTparse::traitsOf(each).kind == ValueKind::seriesFile) {
    return {".txt", ".dat", ".csv"};
  }
  if (path.ends_with("KESTCHAIN_1D/GEOMETRY")) {
    return {".kgf"};
  }
  if (path.ends_with("KESTPLANE_2D/GEOMETRY") || path.ends_with("/ZONE") ||
      path.ends_with("/FIXED_BED")) {
    return {".2dm"};
  }
  if (path.ends_with("/INITIAL")) {
    return {".h5", ".dat", ".sim", ".txt"};
  }
  return {".txt", ".dat"};
}

void addFiles(const Typing& typing, const Place& place, const InputTag& each, Items& items) {
  const std::size_t slash = typing.item.rfind('/');
  const std::string front = slash == std::string::npos ? "" : typing.item.substr(0, slash + 1);
  const std::vector<std::string> endings = endingsOf(place.path, each);
  std::error_code fault;
  std::vector<std::pair<std::string, bool>> found;
  const auto folderPath = std::filesystem::path(typing.directory) / front;
  for (const auto& entry : std::filesystem::directory_iterator(
           folderPath.empty() ? std::filesystem::path(".") : folderPath, fault)) {
    const std::string fileName = entry.path().filename().string();
    const bool isFolder = entry.is_directory(fault);
    const bool fits = std::any_of(endings.begin(), endings.end(), [&](const std::string& ending) {
      return fileName.ends_with(ending);
    });
    if ((isFolder || fits) && !fileName.starts_with('.')) {
      found.emplace_back(fileName, isFolder);
    }
  }
  std::sort(found.begin(), found.end());
  for (const auto& [fileName, isFolder] : found) {
    const std::string written = front + fileName + (isFolder ? "/" : "");
    const bool isUsual = fileName.ends_with(endings.front());
    items.add(isFolder ? Kind::folder : Kind::file, written,
              isFolder  ? Rank::unused
              : isUsual ? Rank::needed
                        : Rank::likely,
              written);
  }
}

void addNames(const Typing& typing, const InputTag& each, Items& items) {
  if (typing.file == nullptr || !typing.file->isRead()) {
    return;
  }
  const NameIndex::Asked asked{typing.cursor.node.value_or(KESTparse::noNode), &each, typing.item};
  for (const std::string& offered : typing.file->names().offered(asked)) {
    items.add(Kind::name, offered, Rank::needed, offered);
  }
}

/// Whether a value of the tag names a node string of a mesh.
bool namesNodeString(const Typing& typing, const InputTag& each) {
  const NamingTable::Row* const row = typing.session->namings.find(each);
  return row != nullptr &&
         std::any_of(row->namings.begin(), row->namings.end(), [](const auto* naming) {
           return naming->thing == KESTparse::NamedThing::nodeString;
         });
}

void addNodeStrings(const Typing& typing, Items& items) {
  if (typing.file == nullptr || !typing.cursor.node) {
    return;
  }
  const std::string mesh = typing.file->names().meshOf(*typing.cursor.node);
  if (mesh.empty()) {
    return;
  }
  const auto path = std::filesystem::path(typing.directory) / mesh;
  for (const MeshName& string : typing.session->files.ofMesh(path).strings) {
    json& item = items.add(Kind::name, string.name, Rank::needed, string.name);
    item["detail"] = "node string of " + mesh;
  }
}

void addValues(const Typing& typing, const Place& place, const InputTag& each, Items& items) {
  const KESTparse::TagTraits traits = KESTparse::traitsOf(each);
  const std::string& preset = each.getDefaultValue();
  std::vector<std::string> choices = KESTparse::allowedValuesOf(each);
  choices.insert(choices.end(), traits.entries.begin(), traits.entries.end());
  for (const std::string& written : choices) {
    json& item = items.add(Kind::choice, written, Rank::likely, written);
    item["data"] = {{"path", place.path}, {"tag", each.getName()}, {"choice", written}};
    if (written == preset) {
      item["detail"] = "default";
      item["preselect"] = true;
    }
  }
  if (choices.empty() && !preset.empty() && !KESTparse::refusesItsDefault(each, traits)) {
    json& item = items.add(Kind::value, preset, Rank::optional, preset);
    item["detail"] = "default" + (each.getUnit().empty() ? "" : " " + each.getUnit());
    item["data"] = {{"path", place.path}, {"tag", each.getName()}};
  }
  addNames(typing, each, items);
  if (namesNodeString(typing, each)) {
    addNodeStrings(typing, items);
  }
  if (isFileTag(each)) {
    addFiles(typing, place, each, items);
  }
}

}  // namespace

Place placeOf(const Typing& typing) {
  Place place{&typing.session->schema, "/"};
  for (const std::string& blockName : typing.cursor.open) {
    const int position = place.block->getLogicalBlockPosition(blockName);
    if (position < 0) {
      return {nullptr, {}};
    }
    place.block = &place.block->getLogicalBlock(static_cast<std::size_t>(position));
    place.path = KESTparse::pathOf(place.path, *place.block);
  }
  return place;
}

const InputTag* tagOf(const Typing& typing) {
  const Place place = placeOf(typing);
  const int position =
      place.block == nullptr ? -1 : place.block->getLogicalTagPosition(typing.cursor.tag);
  return position < 0 ? nullptr : &place.block->getLogicalTag(static_cast<std::size_t>(position));
}

bool needsFiles(const Typing& typing) {
  if (typing.cursor.stands != Cursor::Stands::inValue) {
    return false;
  }
  const InputTag* const each = tagOf(typing);
  return each != nullptr && (isFileTag(*each) || typing.session->namings.find(*each) != nullptr);
}

json complete(const Typing& typing) {
  Items items(typing);
  const Place place = placeOf(typing);
  if (place.block == nullptr) {
    return items.take();
  }
  if (typing.cursor.stands == Cursor::Stands::inName) {
    addTags(typing, place, items);
    addBlocks(typing, place, items);
  } else if (typing.cursor.stands == Cursor::Stands::inValue) {
    if (const InputTag* const each = tagOf(typing)) {
      addValues(typing, place, *each, items);
    }
  }
  return items.take();
}

json resolved(const Session& session, json item) {
  const json data = item.value("data", json::object());
  const Place place = KESTparse::findPlace(session.schema, data.value("path", ""));
  if (place.block == nullptr) {
    return item;
  }
  const std::string tagName = data.value("tag", "");
  const int position = place.block->getLogicalTagPosition(tagName);
  std::string text;
  if (tagName.empty()) {
    text = describeBlock(place);
  } else if (position >= 0) {
    const InputTag& each = place.block->getLogicalTag(static_cast<std::size_t>(position));
    const std::string written = data.value("choice", "");
    text = written.empty() ? describeTag(place, each, session.supplement)
                           : describeChoice(place, each, written, session.supplement);
  }
  if (!text.empty()) {
    item["documentation"] = {{"kind", "markdown"}, {"value", text}};
  }
  return item;
}

}  // namespace kcf::server
