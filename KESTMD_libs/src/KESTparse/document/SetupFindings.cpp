#include "KESTparse/document/SetupFindings.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/Files.h"
#include "KESTparse/base/PlainText.h"
#include "KESTparse/base/Suggestion.h"
#include "KESTparse/document/CheckedMesh.h"
#include "KESTparse/document/CheckedSeries.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/document/Document.h"
#include "KESTparse/document/UnusualValues.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagString.h"
#include "KESTparse/vocabulary/SetupNames.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

/// A file that is looked into.
enum class LookedInto : std::uint8_t { nothing, mesh, series, connections };

/// The tags of files that are no series but have told contents.
struct FileTag {
  std::string_view block;
  std::string_view tag;
  LookedInto content;
};

constexpr FileTag fileTags[] = {
    {"/DOMAIN/KESTPLANE_2D/GEOMETRY", "file", LookedInto::mesh},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDMATERIAL/FIXED_BED", "file", LookedInto::mesh},
    {"/DOMAIN/KESTSUB/GEOMETRY/ZONE", "mesh", LookedInto::mesh},
    {"/DOMAIN/KESTSUB/MATERIAL/SOIL_DEF/ZONE", "mesh", LookedInto::mesh},
    {"/DOMAIN/COUPLINGS/COUPLING_LATERAL", "connections_filename", LookedInto::connections},
};

/// What the columns of a series are. A series that is in no row has times and any values.
struct SeriesMeaning {
  std::string_view block;
  std::string_view tag;
  std::string_view types;  ///< separated by blanks; empty for all
  SeriesUse use;
};

constexpr SeriesUse ofNothingKnown{.argument = {}, .unit = {}};
constexpr SeriesUse ofDischarges{.quantity = "discharge", .least = 0};
constexpr SeriesUse ofLevels{
    .argument = "water level", .unit = "m", .quantity = "discharge", .least = 0};
constexpr SeriesUse ofWidths{.quantity = "width", .least = 0};
constexpr SeriesUse ofSediment{.quantity = "sediment discharge", .least = 0};
constexpr SeriesUse ofConcentrations{.quantity = "concentration", .least = 0, .greatest = 1};

constexpr SeriesMeaning seriesMeanings[] = {
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "file", "hydrograph", ofDischarges},
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "file", "hqrelation coupling_hqrelation",
     ofLevels},
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "width_file", "", ofWidths},
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/INNER_BOUNDARY", "width_file", "", ofWidths},
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/INNER_BOUNDARY",
     "gate_size_file",
     "",
     {.quantity = "size of the gate", .least = 0}},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDLOAD/BOUNDARY", "file", "bed_load_function",
     ofNothingKnown},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDLOAD/BOUNDARY", "file", "sediment_discharge", ofSediment},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDLOAD/BOUNDARY", "multiFile", "", ofSediment},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SUSPENDED_LOAD/BOUNDARY", "file", "", ofConcentrations},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SUSPENDED_LOAD/SOURCE/EXTERNAL_SOURCE", "file", "",
     ofConcentrations},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE", "file", "bed_load_function",
     ofNothingKnown},
    {"/DOMAIN/KESTPLANE_2D/GEOMETRY/MOVABLE_BED", "file", "", {.namesNodes = true}},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/BOUNDARY", "file", "hydrograph", ofDischarges},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/BOUNDARY", "file", "hqrelation coupling_hqrelation",
     ofLevels},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/INNER_BOUNDARY", "file", "hqrelation", ofNothingKnown},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDLOAD/BOUNDARY", "file", "", ofSediment},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/BOUNDARY", "file", "", ofSediment},
    {"/DOMAIN/CONTROLLER/MONITORED_VARIABLE",
     "root_value_series_file",
     "discharge_series",
     {.argument = "discharge", .unit = "m3/s"}},
    {"/DOMAIN/CONTROLLER/MONITORED_VARIABLE", "root_value_series_file", "discharge_time_table",
     ofNothingKnown},
};

const InputBlock& masterOf(const InputBlock& block) {
  return block.getLogicalMaster() == nullptr ? block : *block.getLogicalMaster();
}

/// The first sub-block of that name; null when there is none.
const InputBlock* blockOf(const InputBlock& block, std::string_view name) {
  if (block.getLogicalBlockPosition(name) < 0 || block.getNumBlocksNamed(name) == 0) {
    return nullptr;
  }
  return &block.getBlock(name, 0);
}

bool isWordOf(std::string_view words, std::string_view word) {
  const std::vector<std::string> all = split(" ", words);
  return std::find(all.begin(), all.end(), word) != all.end();
}

/// Whether the two are so alike that one was certainly written for the other: by letter case, or
/// by one slip in a long name. Digits tell names of one kind apart.
bool isSlip(std::string_view written, std::string_view meant) {
  if (toUpper(written) == toUpper(meant)) {
    return true;
  }
  const auto digits = [](std::string_view text) {
    std::string found;
    std::copy_if(text.begin(), text.end(), std::back_inserter(found),
                 [](char c) { return c >= '0' && c <= '9'; });
    return found;
  };
  constexpr std::size_t longName = 5;
  return written.size() >= longName && digits(written) == digits(meant) &&
         editDistance(written, meant, 1) == 1;
}

/// Whether a series holds numbers, white space and comments and nothing else.
bool isPlainSeries(std::string_view text) {
  static constexpr auto isUsual = [] {
    std::array<bool, 256> usual{};
    for (const char c : std::string_view("0123456789.+-eE \t\r\n")) {
      usual[static_cast<unsigned char>(c)] = true;
    }
    return usual;
  }();
  if (!isPlainText(text)) {
    return false;
  }
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isUsual[static_cast<unsigned char>(text[at])]) {
      continue;
    }
    if (text[at] != '#' && !text.substr(at).starts_with("//")) {
      return false;
    }
    at = std::min(text.find('\n', at), text.size());
  }
  return true;
}

/// What is wrong in a list of connections: each row has a cross section of those in the list
/// `order`, a side, and two nodes of the mesh. Null for what is not known.
std::vector<PlacedFault> checkConnectionList(std::string_view text, const std::string_view* order,
                                             const CheckedMesh* mesh) {
  const bool hasMesh = mesh != nullptr && !mesh->materials.empty();
  FaultList faults;
  if (!findForeignText(text, faults)) {
    return faults.placed(text);
  }
  std::unordered_set<std::string_view> sections;
  std::vector<std::string_view> known;
  if (order != nullptr) {
    for (const NameInValue& name : namesIn(*order, NamePart::items)) {
      sections.insert(name.in(*order));
      known.push_back(name.in(*order));
    }
  }
  for (std::size_t begin = 0; begin < text.size(); begin = text.find('\n', begin) + 1) {
    const Span line = lineAt(text, begin);
    const Span section = wordAt(text, begin, 0);
    const std::string_view name = section.in(text);
    if (name.starts_with("end")) {
      break;
    }
    const bool isRow =
        !name.empty() && section != line && !name.starts_with("//") && !name.starts_with('#');
    if (isRow && order != nullptr && !sections.contains(name) && faults.wants(code::unknownName)) {
      const std::string_view nearest = nearestGivenName(name, known);
      faults.add({code::unknownName, section,
                  fmt::format("there is no cross section '{}' in the 1D region", name),
                  nearest.empty() ? std::string("name one of its 'cross_section_order'")
                                  : fmt::format("did you mean '{}'?", nearest)});
    }
    constexpr std::size_t firstNode = 2;
    constexpr std::size_t numWords = 4;
    for (std::size_t i = firstNode; isRow && hasMesh && i < numWords; ++i) {
      const Span word = wordAt(text, begin, i);
      const Extracted<int> node = extractInt(word.in(text));
      if (word != line && node.ok && mesh->nodes.find(node.value) == Kestrix::MeshNodeIndex::none &&
          faults.wants(code::unknownNode)) {
        faults.add({code::unknownNode, word,
                    fmt::format("the mesh of the 2D region has no node {}", node.value),
                    "name the two nodes of an edge of the mesh"});
      }
    }
    if (line.end >= text.size() || text.find('\n', begin) == std::string_view::npos) {
      break;
    }
  }
  return faults.placed(text);
}

/// The tag whose list gives cross sections their names.
constexpr std::string_view sectionList = "cross_section_order";

class Finder {
 public:
  Finder(const Document& document, bool readsFiles, const WordTest& wasSkipped, CheckedFiles& known)
      : d_(&document),
        readsFiles_(readsFiles),
        wasSkipped_(&wasSkipped),
        known_(&known),
        names_(document.root()) {}

  std::vector<Diagnostic> run() {
    look(d_->root());
    return std::move(found_);
  }

 private:
  /// What the tags of a block class lead to.
  struct Interest {
    bool isAny = false;
    std::vector<LookedInto> tags;  // by their places in the schema
    UnusualCheck checkValues = nullptr;
  };

  const Interest& interestIn(const InputBlock& block) {
    const InputBlock& master = masterOf(block);
    const auto [it, isNew] = interests_.try_emplace(&master);
    Interest& interest = it->second;
    if (isNew) {
      interest.isAny = names_.namesSomething(block);
      interest.checkValues = unusualCheckOf(block.getName());
      for (std::size_t i = 0; i < master.getLogicalNumTags(); ++i) {
        const InputTag& tag = master.getLogicalTag(i);
        LookedInto content =
            traitsOf(tag).kind == ValueKind::seriesFile ? LookedInto::series : LookedInto::nothing;
        for (const FileTag& file : fileTags) {
          if (file.tag == tag.getName() && file.block == names_.pathOf(block)) {
            content = file.content;
          }
        }
        interest.tags.push_back(content);
        interest.isAny =
            interest.isAny || content != LookedInto::nothing || tag.getName() == sectionList;
      }
    }
    return interest;
  }

  void look(const InputBlock& block) {
    const Interest& interest = interestIn(block);
    for (std::size_t i = 0; interest.isAny && i < block.getNumTags(); ++i) {
      const InputTag& tag = block.getTag(i);
      const NodeId node = d_->nodeOf(tag);
      if (node == noNode) {
        continue;
      }
      for (const Naming* naming : std::vector(names_.namingsOf(tag))) {
        checkNames(tag, node, *naming);
      }
      if (tag.getName() == sectionList) {
        checkSeparators(tag, node);
      }
      const LookedInto content = interest.tags[tag.getPosition()];
      if (readsFiles_ && content != LookedInto::nothing &&
          !tag.getLogicalMaster()->isSuppressed(block)) {
        checkFile(tag, content);
      }
    }
    if (interest.checkValues != nullptr) {
      tellUnusual(interest.checkValues(block));
    }
    for (std::size_t i = 0; i < block.getNumBlocks(); ++i) {
      look(block.getBlock(i));
    }
  }

  void tellUnusual(const std::vector<UnusualValue>& values) {
    for (const UnusualValue& unusual : values) {
      const NodeId node = d_->nodeOf(*unusual.tag);
      if (node == noNode) {
        continue;
      }
      Span at = d_->syntax().valueOf(d_->syntax()[node]);
      if (unusual.item > 0) {
        const auto items = namesIn(at.in(d_->syntax().blanked()), NamePart::items);
        if (unusual.item <= items.size()) {
          const NameInValue& item = items[unusual.item - 1];
          at = {at.begin + item.begin, at.begin + item.end};
        }
      }
      Diagnostic& told = add(code::unusualValue, at, unusual.message, unusual.help);
      const NodeId other = unusual.other == nullptr ? noNode : d_->nodeOf(*unusual.other);
      if (other != noNode) {
        relate(told, d_->syntax().valueOf(d_->syntax()[other]),
               fmt::format("'{}' is set here", unusual.other->getName()));
      }
    }
  }

  // Names

  /// A comma between the names that a list gives counts as part of them.
  void checkSeparators(const InputTag& tag, NodeId node) {
    const Span value = d_->syntax().valueOf(d_->syntax()[node]);
    const std::string_view text = value.in(d_->syntax().blanked());
    std::vector<Edit> edits;
    for (const NameInValue& name : namesIn(text, NamePart::items)) {
      const char last = name.in(text).back();
      if (last == ',' || last == ';') {
        edits.push_back({{value.begin + name.end - 1, value.begin + name.end}, ""});
      }
    }
    if (!edits.empty()) {
      Diagnostic& told =
          add(code::notAList, edits.front().at,
              fmt::format("'{}' stands between the names of '{}' and counts as part of them",
                          edits.front().at.in(d_->syntax().text()), tag.getName()),
              "separate the names by blanks");
      told.fixes.push_back({"remove what separates the names", std::move(edits)});
    }
  }

  void checkNames(const InputTag& tag, NodeId node, const Naming& naming) {
    // What a list names is looked for in the text, where it stands.
    const Span value = d_->syntax().valueOf(d_->syntax()[node]);
    const std::string_view text = value.in(d_->syntax().blanked());
    const std::vector<NameInValue> names = namesIn(text, naming.part);
    if (naming.thing != NamedThing::tagValue) {
      checkParts(tag, naming, value, names);
      return;
    }
    const KnownNames& known = names_.namesFor(naming, tag);
    if (!known.isKnown) {
      return;
    }
    for (const NameInValue& name : names) {
      const std::string_view written = name.in(text);
      if (known.find(written, naming.ignoresCase) == nullptr && !(*wasSkipped_)(written)) {
        tellLostName(tag, naming, known, {value.begin + name.begin, value.begin + name.end});
      }
    }
  }

  void tellLostName(const InputTag& tag, const Naming& naming, const KnownNames& known, Span at) {
    const std::string_view written = at.in(d_->syntax().blanked());
    std::size_t& left = GlobalValues::instance().comparisonsLeft;
    const std::vector<std::string_view> all =
        left == 0 ? std::vector<std::string_view>() : known.all();
    left -= std::min(all.size(), left);
    const std::string_view nearest = nearestGivenName(written, all);
    Diagnostic& told =
        add(code::unknownName, at,
            fmt::format("there is no {}{} '{}'{}", naming.noun,
                        isNamed(naming.noun) ? " named" : "", written, placeOf(naming, tag)),
            helpFor(naming, all, nearest, written));
    if (nearest.empty()) {
      return;
    }
    if (const NodeId defined = d_->nodeOf(*known.find(nearest)); defined != noNode) {
      relate(told, d_->syntax().valueOf(d_->syntax()[defined]),
             fmt::format("'{}' is here", nearest));
    }
    if (isSlip(written, nearest)) {
      told.fixes.push_back({fmt::format("write '{}'", nearest), {{at, std::string(nearest)}}});
    }
  }

  /// Whether what the noun says has a name of its own.
  static bool isNamed(std::string_view noun) { return noun != "cross section"; }

  /// Where a name is looked for, in words.
  std::string placeOf(const Naming& naming, const InputTag& tag) const {
    const std::string region = regionOf(naming, tag);
    if (!region.empty()) {
      return fmt::format(" in the region '{}'", region);
    }
    const std::string_view path = naming.block;
    if (path.starts_with("/DOMAIN/COUPLINGS") || naming.part == NamePart::region ||
        naming.noun == "KEST_EXTERN") {
      return {};
    }
    return path.starts_with("/DOMAIN/CONTROLLER") ? " in this CONTROLLER" : " in this region";
  }

  /// The region that the setup names for `tag`; empty where that is the one around it.
  static std::string regionOf(const Naming& naming, const InputTag& tag) {
    std::string_view path;
    const std::string regionTag = regionTagOf(naming, tag.getName());
    const InputBlock* block = tag.getActualParent();
    path = regionTag;
    if (path.starts_with("../")) {
      path.remove_prefix(3);
      block = block->getActualParent();
    }
    const InputTag* const named = path.empty() ? nullptr : block->findTag(path);
    if (named == nullptr) {
      return {};
    }
    const std::string_view value = named->getRawText();
    const std::vector<NameInValue> names =
        namesIn(value, naming.scope == NameScope::inFront ? NamePart::region : NamePart::whole);
    return names.empty() ? std::string() : std::string(names.front().in(value));
  }

  static std::string helpFor(const Naming& naming, const std::vector<std::string_view>& known,
                             std::string_view nearest, std::string_view written) {
    if (!nearest.empty()) {
      return fmt::format("did you mean '{}'?", nearest);
    }
    constexpr std::size_t most = 6;
    if (known.empty()) {
      return fmt::format("define '{}': there is no {} at all", written, naming.noun);
    }
    std::string list;
    for (std::size_t i = 0; i < std::min(known.size(), most); ++i) {
      list += fmt::format("{}'{}'", i == 0 ? "" : ", ", known[i]);
    }
    return fmt::format("name {}{}{}, or define '{}'", known.size() == 1 ? "" : "one of ", list,
                       known.size() > most ? " ..." : "", written);
  }

  // Parts of meshes

  void checkParts(const InputTag& tag, const Naming& naming, Span value,
                  const std::vector<NameInValue>& names) {
    // The library looks for node strings.
    const InputTag* const file = naming.thing == NamedThing::nodeString || !readsFiles_
                                     ? nullptr
                                     : names_.meshFor(naming, tag);
    const CheckedMesh* const mesh = file == nullptr ? nullptr : meshAt(file->getRawText());
    if (mesh == nullptr || mesh->materials.empty()) {
      return;
    }
    std::set<std::int32_t> listed;
    std::vector<std::pair<std::int32_t, Span>> lost;
    for (const NameInValue& name : names) {
      const Span at{value.begin + name.begin, value.begin + name.end};
      const Extracted<int> number = extractInt(at.in(d_->syntax().blanked()));
      if (!number.ok) {
        continue;
      }
      const bool isNew = listed.insert(number.value).second;
      if (isNew && !holds(*mesh, naming.thing, number.value)) {
        lost.emplace_back(number.value, at);
      } else if (!isNew && naming.isTable) {
        add(code::unusualValue, at,
            fmt::format("the {} {} stands twice in '{}'", naming.noun, number.value, tag.getName()),
            fmt::format("list each {} once: only one of its values can hold", naming.noun));
      }
    }
    for (const auto& [number, at] : lost) {
      tellLostPart(naming, *mesh, file->getRawText(), number, at);
    }
    if (naming.isTable) {
      tellUnlisted(tag, *mesh, file->getRawText(), listed);
    }
  }

  static bool holds(const CheckedMesh& mesh, NamedThing thing, std::int32_t number) {
    switch (thing) {
      case NamedThing::node:
        return mesh.nodes.find(number) != Kestrix::MeshNodeIndex::none;
      case NamedThing::element:
        return mesh.elements.find(number) != Kestrix::MeshNodeIndex::none;
      case NamedThing::material:
        return std::binary_search(mesh.materials.begin(), mesh.materials.end(), number);
      default:
        return true;
    }
  }

  void tellLostPart(const Naming& naming, const CheckedMesh& mesh, std::string_view file,
                    std::int32_t number, Span at) {
    if (naming.thing == NamedThing::material) {
      add(code::unknownMaterial, at,
          fmt::format("no element of the mesh '{}' has the material {}", file, number),
          fmt::format("correct it, or remove it; the mesh has {}", listOf(mesh.materials)));
      return;
    }
    const auto& [lowest, highest] =
        naming.thing == NamedThing::node ? mesh.nodeRange : mesh.elementRange;
    add(code::unknownName, at, fmt::format("the mesh '{}' has no {} {}", file, naming.noun, number),
        fmt::format("give the number of {} {}: they lie between {} and {}",
                    naming.thing == NamedThing::element ? "an" : "a", naming.noun, lowest,
                    highest));
  }

  /// Some numbers of materials, in words.
  static std::string listOf(const std::vector<std::int32_t>& materials) {
    constexpr std::size_t most = 8;
    const std::size_t count = std::min(materials.size(), most);
    std::string list = materials.size() == 1 ? "the material" : "the materials";
    for (std::size_t i = 0; i < count; ++i) {
      const bool isLast = i + 1 == materials.size();
      list += fmt::format("{} {}", i == 0 ? "" : isLast ? " and" : ",", materials[i]);
    }
    return list + (materials.size() > most ? " and others" : "");
  }

  void tellUnlisted(const InputTag& tag, const CheckedMesh& mesh, std::string_view file,
                    const std::set<std::int32_t>& listed) {
    std::vector<std::int32_t> left;
    std::set_difference(mesh.materials.begin(), mesh.materials.end(), listed.begin(), listed.end(),
                        std::back_inserter(left));
    const NodeId node = d_->nodeOf(tag);
    if (!left.empty()) {
      add(code::unlistedMaterial, d_->syntax().valueOf(d_->syntax()[node]),
          fmt::format("'{}' leaves out {} of the mesh '{}'", tag.getName(), listOf(left), file),
          "add what is left out with its values, unless the default shall hold there");
    }
  }

  // Files

  /// The mesh that is named so; null when it cannot be read.
  const CheckedMesh* meshAt(std::string_view name) {
    const std::string path = openedPath(resolvePath(name));
    const auto [it, isNew] = known_->meshes.try_emplace(path);
    if (isNew) {
      const FileText text = readFile(resolvePath(name));
      if (text.wasRead) {
        it->second = checkMesh(text.content);
      }
    }
    return it->second.get();
  }

  void checkFile(const InputTag& tag, LookedInto content) {
    switch (content) {
      case LookedInto::mesh:
        if (const CheckedMesh* const mesh = meshAt(tag.getRawText())) {
          tell(tag, mesh->faults);
        }
        break;
      case LookedInto::series:
        checkSeriesOf(tag);
        break;
      case LookedInto::connections:
        checkConnections(tag);
        break;
      case LookedInto::nothing:
        break;
    }
  }

  /// Tells the faults of the file that `tag` names, those that were not told yet.
  void tell(const InputTag& tag, const std::vector<PlacedFault>& faults) {
    const Span named = d_->syntax().valueOf(d_->syntax()[d_->nodeOf(tag)]);
    const auto placed = [&](const FilePlace& at) {
      return TextPlace{named, std::string(tag.getRawText()), at.line, at.column, at.endColumn};
    };
    const std::string path = resolvePath(tag.getRawText());
    for (const PlacedFault& fault : faults) {
      if (!told_.emplace(path, fault.at.line, fault.at.column, fault.code).second) {
        continue;
      }
      Diagnostic& made = add(fault.code, named, fault.message, fault.help);
      made.at = placed(fault.at);
      for (const PlacedFault::Other& other : fault.related) {
        made.related.push_back({placed(other.at), other.message});
      }
      relate(made, named, "the file is named here");
    }
  }

  void checkSeriesOf(const InputTag& tag) {
    const SeriesUse use = useOf(tag);
    const auto& series = static_cast<const InputTagSeriesFile&>(tag);
    const std::string opened = openedPath(series.path());
    // The table of a tag that stands repeatedly is that of its last instance.
    const bool hasRows = !tag.isRepeatable();
    SeriesLook look = hasRows ? neededLook(series.rows(), use) : SeriesLook::everywhere;
    if (look == SeriesLook::nowhere && known_->plainSeries.contains(opened)) {
      return;
    }
    const FileText text = readFile(series.path());
    if (!text.wasRead) {
      return;
    }
    if (isPlainSeries(text.content)) {
      known_->plainSeries.insert(opened);
    } else {
      look = SeriesLook::everywhere;
    }
    if (look != SeriesLook::nowhere) {
      tell(tag, checkSeries(text.content, use, look));
    }
  }

  SeriesUse useOf(const InputTag& tag) {
    const InputBlock& block = *tag.getActualParent();
    const InputTag* type = block.findTag("root_value_type");
    type = type == nullptr ? block.findTag("type") : type;
    SeriesUse use;
    for (const SeriesMeaning& meaning : seriesMeanings) {
      if (meaning.tag == tag.getName() && meaning.block == names_.pathOf(block) &&
          (meaning.types.empty() ||
           (type != nullptr && isWordOf(meaning.types, type->getRawText())))) {
        use = meaning.use;
      }
    }
    if (use.argument == "time") {
      setTimes(use, regionAround(block));
    }
    if (use.namesNodes) {
      const InputTag* const file = block.getActualParent()->findTag("file");
      const CheckedMesh* const mesh = file == nullptr ? nullptr : meshAt(file->getRawText());
      use.nodes = mesh == nullptr || mesh->materials.empty() ? nullptr : &mesh->nodes;
    }
    return use;
  }

  /// The region around a block; of a controlled variable the one of its position.
  const InputBlock* regionAround(const InputBlock& block) {
    if (const InputTag* const position = block.findTag("position")) {
      for (const Naming* naming : std::vector(names_.namingsOf(*position))) {
        if (naming->part == NamePart::region) {
          const std::string_view value = position->getRawText();
          const std::vector<NameInValue> names = namesIn(value, NamePart::region);
          const InputTag* const name =
              names.empty() ? nullptr
                            : names_.namesFor(*naming, *position).find(names.front().in(value));
          return name == nullptr ? nullptr : name->getActualParent();
        }
      }
    }
    const InputBlock* region = &block;
    while (region != nullptr && region->getLogicalBlockPosition("TIMESTEP") < 0) {
      region = region->getActualParent();
    }
    return region;
  }

  static void setTimes(SeriesUse& use, const InputBlock* region) {
    const InputBlock* const step = region == nullptr ? nullptr : blockOf(*region, "TIMESTEP");
    if (step == nullptr) {
      return;
    }
    const InputTag* const end = step->findTag("total_run_time");
    if (end != nullptr && end->asDouble() > 0) {
      use.end = end->asDouble();
    }
    const InputTag* const begin = step->findTag("start_time");
    if (begin != nullptr && begin->asDouble() >= 0) {
      use.begin = begin->asDouble();
    } else if (!isContinued(*region)) {
      use.begin = 0;
    }
  }

  /// Whether a region goes on from an earlier simulation, at a time that its results tell.
  static bool isContinued(const InputBlock& region) {
    const InputBlock* const hydraulics = blockOf(region, "HYDRAULICS");
    const InputBlock* const initial =
        blockOf(hydraulics == nullptr ? region : *hydraulics, "INITIAL");
    const InputTag* const type = initial == nullptr ? nullptr : initial->findTag("type");
    return type != nullptr && type->getRawText() == "continue";
  }

  /// Looks at the cross sections and the nodes that a list of connections names. Its form is
  /// checked by the library, which takes an unknown cross section for the first one.
  void checkConnections(const InputTag& tag) {
    const FileText file = readFile(resolvePath(tag.getRawText()));
    if (!file.wasRead) {
      return;
    }
    const InputBlock& block = *tag.getActualParent();
    const InputBlock* const chain = regionNamed(block, "kestchain");
    const InputBlock* const plane = regionNamed(block, "kestplane");
    const InputBlock* const sections = chain == nullptr ? nullptr : blockOf(*chain, "GEOMETRY");
    const InputBlock* const geometry = plane == nullptr ? nullptr : blockOf(*plane, "GEOMETRY");
    const InputTag* const order =
        sections == nullptr ? nullptr : sections->findTag("cross_section_order");
    const InputTag* const mesh = geometry == nullptr ? nullptr : geometry->findTag("file");
    const std::string_view listed = order == nullptr ? "" : order->getRawText();
    tell(tag, checkConnectionList(file.content, order == nullptr ? nullptr : &listed,
                                  mesh == nullptr ? nullptr : meshAt(mesh->getRawText())));
  }

  /// The region that a tag of `block` names; null when there is none.
  const InputBlock* regionNamed(const InputBlock& block, std::string_view name) {
    const InputTag* const tag = block.findTag(name);
    if (tag == nullptr) {
      return nullptr;
    }
    for (const Naming* naming : std::vector(names_.namingsOf(*tag))) {
      const InputTag* const region =
          names_.namesFor(*naming, *tag).find(tag->getRawText(), naming->ignoresCase);
      if (region != nullptr) {
        return region->getActualParent();
      }
    }
    return nullptr;
  }

  Diagnostic& add(std::string_view code, Span at, std::string message, std::string help) {
    found_.push_back({.severity = findCode(code)->severity,
                      .origin = Origin::checker,
                      .code = std::string(code),
                      .at = {.at = at},
                      .message = std::move(message),
                      .help = std::move(help)});
    return found_.back();
  }

  static void relate(Diagnostic& told, Span at, std::string message) {
    told.related.push_back({{.at = at}, std::move(message)});
  }

  const Document* d_;
  bool readsFiles_;
  const WordTest* wasSkipped_;
  CheckedFiles* known_;
  SetupNames names_;
  std::vector<Diagnostic> found_;
  std::unordered_map<const InputBlock*, Interest> interests_;  // by masters
  std::set<std::tuple<std::string, std::uint32_t, std::uint32_t, std::string_view>> told_;
};

}  // namespace

std::vector<Diagnostic> findInSetup(const Document& document, bool readsFiles,
                                    const WordTest& wasSkipped, CheckedFiles& known) {
  return Finder(document, readsFiles, wasSkipped, known).run();
}

}  // namespace KESTparse
