#include "KESTparse/vocabulary/Example.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <sstream>
#include <string_view>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/Scanner.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

/// Blocks that rules ask more of than their tags tell. The examples name the same regions, places,
/// mixtures and soils, so that they fit together.
struct Snippet {
  std::string_view path;  ///< how the path of the block ends
  std::string_view text;
};
constexpr Snippet snippets[] = {
    {"KESTCHAIN_1D/HYDRAULICS/BOUNDARY",
     R"(BOUNDARY {
  string = upstream
  type = hydrograph
  file = my_file.txt
  slope = 1.0
}
BOUNDARY {
  string = downstream
  type = hqrelation
  slope = 1.0
}
)"},
    {"KESTCHAIN_1D/HYDRAULICS/INNER_BOUNDARY",
     R"(INNER_BOUNDARY {
  type = weir
  cross_section_name_1 = first
  cross_section_name_2 = second
  ehead_reference_location = first
}
)"},
    {"KESTCHAIN_1D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE",
     R"(EXTERNAL_SOURCE {
  name = my_source
  type = qlateral
  file = my_file.txt
  cross_section = first
}
)"},
    {"KESTCHAIN_1D/MORPHOLOGY/PARAMETER",
     R"(PARAMETER {
  porosity = 37
  density = 2650
  control_volume_thickness = 0.1
}
)"},
    {"KESTCHAIN_1D/MORPHOLOGY/BEDLOAD/BOUNDARY",
     R"(BOUNDARY {
  type = sediment_discharge
  string = upstream
  file = my_file.txt
  mixture = my_mixture
}
BOUNDARY {
  type = IODown
  string = downstream
}
)"},
    {"KESTCHAIN_1D/MORPHOLOGY/SUSPENDED_LOAD/BOUNDARY",
     R"(BOUNDARY {
  type = suspension_discharge
  string = upstream
  file = my_file.txt
  mixture = my_mixture
}
BOUNDARY {
  type = out_down
  string = downstream
}
)"},
    {"KESTCHAIN_1D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE",
     R"(EXTERNAL_SOURCE {
  type = sediment_discharge
  file = my_file.txt
  mixture = my_mixture
  cross_section = first
}
)"},
    {"BEDLOAD/FORMULA",
     R"(FORMULA {
  bedload_formula = wu
  bedload_factor = 1.0
}
)"},
    {"BEDMATERIAL/MIXTURE",
     R"(MIXTURE {
  name = my_mixture
  volume_fraction = ( 40 60 )
}
)"},
    {"BEDMATERIAL/SOIL_DEF",
     R"(SOIL_DEF {
  name = my_soil
  LAYER {
    mixture = my_mixture
    bottom_elevation = -1
  }
}
)"},
    {"BEDMATERIAL/SOIL_ASSIGNMENT",
     R"(SOIL_ASSIGNMENT {
  type = index_table
  index = ( 1 )
  soil = ( my_soil )
}
)"},
    {"KESTPLANE_2D/GEOMETRY",
     R"(GEOMETRY {
  type = 2dm
  file = my_mesh.2dm
  STRINGDEF {
    name = my_string_name
    upstream_direction = right
  }
}
)"},
    {"KESTPLANE_2D/GEOMETRY/STRINGDEF",
     R"(STRINGDEF {
  name = my_string_name
  upstream_direction = right
}
)"},
    {"KESTPLANE_2D/HYDRAULICS/BOUNDARY",
     R"(BOUNDARY {
  type = hydrograph
  string_name = my_string_name
  file = my_file.txt
  slope = 1.0
}
)"},
    {"KESTPLANE_2D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE",
     R"(EXTERNAL_SOURCE {
  type = sediment_discharge
  file = my_file.txt
  mixture = my_mixture
  elem_ids = ( 1 2 )
}
)"},
    {"VEGETATION/INITIAL",
     R"(INITIAL {
  type = index_table
  index = ( 1 )
  B = 0.5
}
)"},
    {"KESTSUB/GEOMETRY",
     R"(GEOMETRY {
  ref_coordinates = ( 0.0 0.0 0.0 )
  base_vector_i = ( 1.0 0.0 0.0 )
  base_vector_j = ( 0.0 1.0 0.0 )
  cell_size = 0.5
  no_cells_i = 100
  no_cells_j = 100
  no_cells_k = 20
  ZONE {
    name = my_zone
    type = default
  }
}
)"},
    {"KESTSUB/GEOMETRY/ZONE",
     R"(ZONE {
  name = my_zone
  type = default
}
)"},
    {"KESTSUB/MATERIAL/SOIL_DEF",
     R"(SOIL_DEF {
  kf = 0.001
  zone = my_zone
  RETENTION_MODEL {
    type = van_genuchten
    n = 2.0
    alpha = 8.0
  }
}
)"},
    {"COUPLING_LATERAL",
     R"(COUPLING_LATERAL {
  kestchain = my_channel
  kestplane = my_floodplain
  connections_filename = my_file.txt
  weir_from_dyke1D = no
}
)"},
    {"MONITORED_VARIABLE",
     R"(MONITORED_VARIABLE {
  name = my_level
  type = wse
  position = my_channel.first
}
)"},
    {"MANIPULATED_VARIABLE",
     R"(MANIPULATED_VARIABLE {
  name = my_weir
  position = my_channel.my_place
  start_value = 1.0
}
)"},
};

/// Optional sub-blocks without which a rule refuses or regrets the block.
struct Companion {
  std::string_view path;  ///< how the path of the block ends
  std::string_view subBlock;
};
constexpr Companion companions[] = {
    {"/DOMAIN", "KESTPLANE_2D"},
    {"KESTCHAIN_1D/MORPHOLOGY", "BEDLOAD"},
    {"KESTPLANE_2D/HYDRAULICS", "BOUNDARY"},
    {"KESTPLANE_2D/MORPHOLOGY/BEDLOAD", "BOUNDARY"},
    {"KESTPLANE_2D/MORPHOLOGY/BEDLOAD", "DIRECTION"},
    {"KEST_EXTERN", "BOUNDARY"},
    {"COUPLINGS/COUPLING", "HYDRAULICS"},
};

bool isCompanion(std::string_view path, std::string_view subBlock) {
  return std::any_of(std::begin(companions), std::end(companions), [&](const Companion& row) {
    return path.ends_with(row.path) && row.subBlock == subBlock;
  });
}

/// A number within `range`, a plain one if possible.
double numberIn(const Range<double>& range) {
  if (range.contains(1.0)) {
    return 1.0;
  }
  if (range.hasLower && range.hasUpper) {
    return (range.lower + range.upper) / 2.0;
  }
  return range.hasLower ? std::floor(range.lower) + 1.0 : std::ceil(range.upper) - 1.0;
}

/// As many of `items` as the list of a tag takes.
std::string listOf(const TagTraits& traits, const std::vector<std::string>& items) {
  std::size_t count = items.size();
  if (traits.itemCount > 0) {
    count = static_cast<std::size_t>(traits.itemCount);
  } else if (traits.itemCount < 0) {
    count = std::min(count, static_cast<std::size_t>(-traits.itemCount));
  }
  std::string list = "(";
  for (std::size_t i = 0; i < count; ++i) {
    list += " " + items[i % items.size()];
  }
  return list + " )";
}

std::string sampleOf(const InputTag& tag) {
  if (tag.isRestricted()) {
    return tag.getRestrictedValue(0);
  }
  const TagTraits traits = traitsOf(tag);
  std::string own = "my_" + std::string(tag.getName());
  switch (traits.kind) {
    case ValueKind::integer:
    case ValueKind::real:
      return doubleToString(numberIn(traits.range));
    case ValueKind::text:
      return own;
    case ValueKind::file:
    case ValueKind::seriesFile:
      return own + ".txt";
    case ValueKind::position:
      return "my_region.my_place";
    case ValueKind::integers:
      return listOf(traits, {"1", "2"});
    case ValueKind::reals:
      return listOf(traits, {"1.0", "2.0"});
    case ValueKind::words:
    case ValueKind::outputValues:
      if (!traits.entries.empty()) {
        const auto count = std::min<std::ptrdiff_t>(2, std::ssize(traits.entries));
        return listOf(traits, {traits.entries.begin(), traits.entries.begin() + count});
      }
      return listOf(traits, {"first", "second"});
    case ValueKind::namedReals:
      return "my_name:" + listOf(traits, {"1.0", "2.0"});
  }
  return own;
}

/// Chooses the tags of one block.
class Choice {
 public:
  explicit Choice(const InputBlock& block) : block_(&block) {
    // Later tags may require earlier ones.
    for (std::size_t before = tags_.size() + 1; before != tags_.size();) {
      before = tags_.size();
      addRequired();
    }
  }

  /// Adds tags without rules, those with a default first, until there are `count`.
  void addOptional(std::size_t count) {
    for (const bool hasDefault : {true, false}) {
      for (const InputTag& tag : block_->logicalTags()) {
        if (tags_.size() >= count) {
          return;
        }
        const TagTraits traits = traitsOf(tag);
        if (tag.getDefaultValue().empty() != hasDefault && traits.rules.empty() &&
            traits.kind != ValueKind::seriesFile && isWritableName(tag.getName())) {
          tags_.try_emplace(tag.getPosition(), hasDefault ? tag.getDefaultValue() : sampleOf(tag));
        }
      }
    }
  }

  /// The values by the place of the tag in the schema.
  [[nodiscard]] const std::map<std::size_t, std::string>& tags() const { return tags_; }

 private:
  /// Whether the tag that `condition` looks at has, or will have by its default, such a value.
  [[nodiscard]] bool isMet(const Condition& condition) const {
    if (condition.sibling < 0) {
      return false;
    }
    const auto sibling = static_cast<std::size_t>(condition.sibling);
    const auto chosen = tags_.find(sibling);
    if (chosen != tags_.end()) {
      return condition.isMet(chosen->second);
    }
    const std::string& value = block_->getLogicalTag(sibling).getDefaultValue();
    return !value.empty() && condition.isMet(value);
  }

  [[nodiscard]] bool isRequired(const InputTag& tag) const {
    const std::vector<TagRule> rules = traitsOf(tag).rules;
    return tag.isMandatoryBySchema() && std::all_of(rules.begin(), rules.end(), [this](auto& rule) {
             switch (rule.kind) {
               case TagRule::Kind::usedIf:
                 return true;
               case TagRule::Kind::requiredIf:
                 return isMet(*rule.condition);
               case TagRule::Kind::exclusive:
                 break;
             }
             return !tags_.contains(
                 static_cast<std::size_t>(block_->getLogicalTagPosition(rule.other)));
           });
  }

  void addRequired() {
    for (const InputTag& tag : block_->logicalTags()) {
      if (!tags_.contains(tag.getPosition()) && tag.getDefaultValue().empty() && isRequired(tag)) {
        tags_[tag.getPosition()] = sampleOf(tag);
      }
    }
  }

  const InputBlock* block_;
  std::map<std::size_t, std::string> tags_;
};

/// Writes what is needed in `block`, which stands at `path`; more for the block that the example is
/// about.
void write(const InputBlock& block, const std::string& path, bool isTopic, std::size_t depth,
           std::ostream& out) {
  constexpr std::size_t fewTags = 3;
  const std::string indent(2 * depth, ' ');
  const auto* const snippet =
      std::find_if(std::begin(snippets), std::end(snippets),
                   [&path](const Snippet& row) { return path.ends_with(row.path); });
  if (snippet != std::end(snippets)) {
    for (const std::string& line : split("\n", snippet->text)) {
      out << indent << line << "\n";
    }
    return;
  }
  Choice choice(block);
  if (isTopic) {
    choice.addOptional(fewTags);
  }
  out << indent << block.getName() << " {\n";
  for (const auto& [position, value] : choice.tags()) {
    out << indent << "  " << block.getLogicalTag(position).getName() << " = " << value << "\n";
  }
  bool isEmpty = choice.tags().empty();
  for (const InputBlock& child : block.logicalBlocks()) {
    if (child.isMandatory() || isCompanion(path, child.getName())) {
      write(child, pathOf(path, child), false, depth + 1, out);
      isEmpty = false;
    }
  }
  if (isEmpty && isTopic && block.getLogicalNumBlocks() > 0) {
    const InputBlock& first = block.getLogicalBlock(0);
    write(first, pathOf(path, first), true, depth + 1, out);
  }
  out << indent << "}\n";
}

/// Whether `snippet` parses as the block at `place`.
bool parses(const std::string& snippet, const Place& place) {
  std::string text;
  std::string ends;
  const std::vector<std::string> names = split("/", place.path);
  for (std::size_t i = 0; i + 1 < names.size(); ++i) {
    text += names[i] + " {\n";
    ends += "}\n";
  }
  std::istringstream in(text + snippet + ends);
  KestrixInputRoot root;
  InputParser parser(root);
  try {
    parser.parse(in, true, "");
  } catch (const InputParseError&) {
    return false;
  }
  return parser.getMessage().empty();
}

}  // namespace

std::vector<std::pair<const InputTag*, std::string>> neededTags(const InputBlock& block) {
  std::vector<std::pair<const InputTag*, std::string>> tags;
  const Choice choice(block);
  for (const auto& [position, value] : choice.tags()) {
    tags.emplace_back(&block.getLogicalTag(position), value);
  }
  return tags;
}

std::string exampleOf(const Place& place) {
  std::ostringstream given;
  place.block->getExample(given);
  if (!given.str().empty() && parses(given.str(), place)) {
    return given.str();
  }
  std::ostringstream out;
  if (place.block->getLogicalParent() == nullptr) {
    // The root has no name in a command file.
    for (const InputBlock& block : place.block->logicalBlocks()) {
      write(block, pathOf("/", block), true, 0, out);
    }
  } else {
    write(*place.block, place.path, true, 0, out);
  }
  return out.str();
}

}  // namespace KESTparse
