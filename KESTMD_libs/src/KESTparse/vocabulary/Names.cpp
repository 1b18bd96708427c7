#include "KESTparse/vocabulary/Names.h"

#include <algorithm>

#include "KESTparse/base/Conversions.h"

namespace KESTparse {
namespace {

// What defines names.

constexpr DefiningTag crossSections[] = {
    {"/DOMAIN/KESTCHAIN_1D/GEOMETRY", "cross_section_order", NamePart::items}};
constexpr DefiningTag strings[] = {{"/DOMAIN/KESTPLANE_2D/GEOMETRY/STRINGDEF", "name"}};
constexpr DefiningTag mesh[] = {{"/DOMAIN/KESTPLANE_2D/GEOMETRY", "file"}};
constexpr DefiningTag chains[] = {{"/DOMAIN/KESTCHAIN_1D", "region_name"}};
constexpr DefiningTag planes[] = {{"/DOMAIN/KESTPLANE_2D", "region_name"}};
constexpr DefiningTag rivers[] = {{"/DOMAIN/KESTCHAIN_1D", "region_name"},
                                  {"/DOMAIN/KESTPLANE_2D", "region_name"}};
constexpr DefiningTag externals[] = {{"/DOMAIN/KEST_EXTERN", "region_name"}};
constexpr DefiningTag externalOrGround[] = {{"/DOMAIN/KEST_EXTERN", "region_name"},
                                            {"/DOMAIN/KESTSUB", "region_name"}};
constexpr DefiningTag mixtures1d[] = {
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDMATERIAL/MIXTURE", "name"}};
constexpr DefiningTag mixtures2d[] = {
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDMATERIAL/MIXTURE", "name"}};
constexpr DefiningTag soils1d[] = {
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDMATERIAL/SOIL_DEF", "name"}};
constexpr DefiningTag soils2d[] = {
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDMATERIAL/SOIL_DEF", "name"}};
constexpr DefiningTag zones[] = {{"/DOMAIN/KESTSUB/GEOMETRY/ZONE", "name"},
                                 {"/DOMAIN/KESTSUB/MATERIAL/SOIL_DEF/ZONE", "name"}};
constexpr DefiningTag manipulated[] = {{"/DOMAIN/CONTROLLER/MANIPULATED_VARIABLE", "name"}};
constexpr DefiningTag monitored[] = {{"/DOMAIN/CONTROLLER/MONITORED_VARIABLE", "name"}};
// An inner boundary of a 1D region has no name by which it could be moved.
constexpr DefiningTag movable[] = {
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "name"},
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "name"},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/BOUNDARY", "string_name"},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/INNER_BOUNDARY", "string_name1"},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "name"}};
constexpr DefiningTag waterInterfaces[] = {
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/BOUNDARY", "name"},
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "name"},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/BOUNDARY", "name"},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "name"},
    {"/DOMAIN/KESTSUB/BOUNDARY", "name"},
    {"/DOMAIN/KEST_EXTERN/BOUNDARY", "name"}};
constexpr DefiningTag bedloadInterfaces[] = {
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDLOAD/BOUNDARY", "name"},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE", "name"},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDLOAD/BOUNDARY", "name"},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE", "name"},
    {"/DOMAIN/KEST_EXTERN/BOUNDARY", "name"}};
constexpr DefiningTag suspensionInterfaces[] = {
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SUSPENDED_LOAD/BOUNDARY", "name"},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SUSPENDED_LOAD/SOURCE/EXTERNAL_SOURCE", "name"},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/BOUNDARY", "name"},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/SOURCE/EXTERNAL_SOURCE", "name"},
    {"/DOMAIN/KEST_EXTERN/BOUNDARY", "name"}};

constexpr std::string_view interfaces =
    "upstream_interface downstream_interface upstream_interface1 upstream_interface2 "
    "downstream_interface1 downstream_interface2 external_interface kestrix_interface";

constexpr std::string_view crossSection = "cross section";
constexpr std::string_view boundaryOrSource = "BOUNDARY or EXTERNAL_SOURCE";

constexpr Naming materialsOf(std::string_view block, std::string_view tags) {
  return {.block = block,
          .tags = tags,
          .noun = "material",
          .defined = mesh,
          .part = NamePart::items,
          .thing = NamedThing::material};
}

/// Lists of materials beside lists of their values.
constexpr Naming tablesOf(std::string_view block, std::string_view tags) {
  Naming naming = materialsOf(block, tags);
  naming.isTable = true;
  return naming;
}

constexpr Naming nodesOf(std::string_view block, std::string_view tags) {
  return {.block = block,
          .tags = tags,
          .noun = "node",
          .defined = mesh,
          .part = NamePart::items,
          .thing = NamedThing::node};
}

constexpr Naming elementsOf(std::string_view block, std::string_view tags) {
  return {.block = block,
          .tags = tags,
          .noun = "element",
          .defined = mesh,
          .part = NamePart::items,
          .thing = NamedThing::element};
}

/// The tag `ids`, whose numbers are those of nodes or of elements by the type of the output.
constexpr Naming rangeOf(std::string_view block, std::string_view noun, NamedThing thing,
                         std::string_view type) {
  return {.block = block,
          .tags = "ids",
          .noun = noun,
          .defined = mesh,
          .part = NamePart::items,
          .thing = thing,
          .onlyForType = type};
}

constexpr Naming interfacesOf(std::string_view block, std::span<const DefiningTag> defined) {
  return {.block = block,
          .tags = interfaces,
          .noun = boundaryOrSource,
          .defined = defined,
          .scope = NameScope::ofInterface};
}

constexpr Naming namings[] = {
    // 1D regions
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "cross_section", crossSection,
     crossSections},
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "cross_sections", crossSection,
     crossSections, NamePart::items},
    {"/DOMAIN/KESTCHAIN_1D/HYDRAULICS/INNER_BOUNDARY",
     "cross_section_name_1 cross_section_name_2 ehead_reference_location", crossSection,
     crossSections},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDMATERIAL/SOIL_DEF/LAYER", "mixture", "MIXTURE",
     mixtures1d},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDMATERIAL/SOIL_ASSIGNMENT", "soil", "SOIL_DEF", soils1d,
     NamePart::items},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/BEDLOAD/BOUNDARY", "mixture", "MIXTURE", mixtures1d},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SUSPENDED_LOAD/BOUNDARY", "mixture", "MIXTURE", mixtures1d},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SUSPENDED_LOAD/INITIAL", "mixture", "MIXTURE", mixtures1d},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SUSPENDED_LOAD/SOURCE/EXTERNAL_SOURCE", "mixture", "MIXTURE",
     mixtures1d},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SUSPENDED_LOAD/SOURCE/EXTERNAL_SOURCE", "cross_section",
     crossSection, crossSections},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE", "mixture", "MIXTURE", mixtures1d},
    {"/DOMAIN/KESTCHAIN_1D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE", "cross_section", crossSection,
     crossSections},
    {"/DOMAIN/KESTCHAIN_1D/OUTPUT/SPECIAL_OUTPUT", "cross_sections", crossSection, crossSections,
     NamePart::items},
    {"/DOMAIN/KESTCHAIN_1D/OUTPUT/SPECIAL_OUTPUT", "KESTextern", "KEST_EXTERN", externals},

    // 2D regions
    {"/DOMAIN/KESTPLANE_2D/GEOMETRY/STRINGDEF", "name", "node string", mesh, NamePart::whole,
     NamedThing::nodeString},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/BOUNDARY", "string_name", "STRINGDEF", strings},
    {"/DOMAIN/KESTPLANE_2D/HYDRAULICS/INNER_BOUNDARY", "string_name1 string_name2", "STRINGDEF",
     strings},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDMATERIAL/SOIL_DEF/LAYER", "mixture", "MIXTURE",
     mixtures2d},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDMATERIAL/SOIL_ASSIGNMENT", "soil", "SOIL_DEF", soils2d,
     NamePart::items},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDLOAD/BOUNDARY", "string_name", "STRINGDEF", strings},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDLOAD/BOUNDARY", "mixture", "MIXTURE", mixtures2d},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDLOAD/INNER_BOUNDARY", "string_name1 string_name2",
     "STRINGDEF", strings},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/BOUNDARY", "string_name", "STRINGDEF",
     strings},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/BOUNDARY", "mixture", "MIXTURE", mixtures2d},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/INITIAL", "mixture", "MIXTURE", mixtures2d,
     NamePart::items},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/SOURCE/EXTERNAL_SOURCE", "mixture", "MIXTURE",
     mixtures2d},
    {"/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE", "mixture", "MIXTURE", mixtures2d},
    {"/DOMAIN/KESTPLANE_2D/OUTPUT/SPECIAL_OUTPUT", "stringdefs", "STRINGDEF", strings,
     NamePart::items},
    {"/DOMAIN/KESTPLANE_2D/OUTPUT/SPECIAL_OUTPUT", "KESTextern", "KEST_EXTERN", externals},

    // Parts of the mesh of a 2D region
    tablesOf("/DOMAIN/KESTPLANE_2D/HYDRAULICS/FRICTION", "index"),
    tablesOf("/DOMAIN/KESTPLANE_2D/HYDRAULICS/INITIAL", "index"),
    materialsOf("/DOMAIN/KESTPLANE_2D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "index"),
    tablesOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/PARAMETER",
             "control_volume_thickness_index distortion_index"),
    tablesOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDMATERIAL/SOIL_ASSIGNMENT", "index"),
    tablesOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDLOAD/FORMULA",
             "theta_critical_index bedforms_index"),
    materialsOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDLOAD/PARAMETER", "upwind_index"),
    materialsOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDLOAD/DIRECTION", "lateral_index"),
    tablesOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/INITIAL", "index"),
    materialsOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/GRAVITATIONAL_TRANSPORT", "index"),
    materialsOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE", "index"),
    materialsOf("/DOMAIN/KESTPLANE_2D/VEGETATION/INITIAL", "indexGrow index"),
    nodesOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/BEDMATERIAL/FIXED_BED", "node_ids"),
    nodesOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE",
            "node_ids dredge_node_ids_redist"),
    nodesOf("/DOMAIN/KESTPLANE_2D/OUTPUT/SPECIAL_OUTPUT", "node_ids"),
    {"/DOMAIN/KESTPLANE_2D/OUTPUT/SPECIAL_OUTPUT", "edge_ids", "node", mesh, NamePart::ends,
     NamedThing::node},
    rangeOf("/DOMAIN/KESTPLANE_2D/OUTPUT/SPECIAL_OUTPUT", "node", NamedThing::node,
            "node_centered"),
    rangeOf("/DOMAIN/KESTPLANE_2D/OUTPUT/SPECIAL_OUTPUT", "element", NamedThing::element,
            "element_centered"),
    elementsOf("/DOMAIN/KESTPLANE_2D/HYDRAULICS/SOURCE/EXTERNAL_SOURCE", "element_ids"),
    elementsOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SUSPENDED_LOAD/SOURCE/EXTERNAL_SOURCE",
               "element_ids"),
    elementsOf("/DOMAIN/KESTPLANE_2D/MORPHOLOGY/SOURCE/EXTERNAL_SOURCE",
               "elem_ids dredge_elem_ids_redist"),
    elementsOf("/DOMAIN/KESTPLANE_2D/OUTPUT/SPECIAL_OUTPUT", "element_ids"),

    // Subsurface regions
    {"/DOMAIN/KESTSUB/MATERIAL/SOIL_DEF", "zone", "ZONE", zones},
    materialsOf("/DOMAIN/KESTSUB/BOUNDARY", "material_index"),

    // Couplings
    {"/DOMAIN/COUPLINGS/COUPLING",
     "upstream_subdomain downstream_subdomain upstream_subdomain1 upstream_subdomain2 "
     "downstream_subdomain1 downstream_subdomain2 kestrix_subdomain",
     "1D or 2D region", rivers},
    {"/DOMAIN/COUPLINGS/COUPLING", "external_subdomain", "KEST_EXTERN or KESTSUB region",
     externalOrGround},
    interfacesOf("/DOMAIN/COUPLINGS/COUPLING/HYDRAULICS", waterInterfaces),
    interfacesOf("/DOMAIN/COUPLINGS/COUPLING/BEDLOAD", bedloadInterfaces),
    interfacesOf("/DOMAIN/COUPLINGS/COUPLING/SUSPENSION", suspensionInterfaces),
    interfacesOf("/DOMAIN/COUPLINGS/COUPLING/SUBSURFACE", waterInterfaces),
    {.block = "/DOMAIN/COUPLINGS/COUPLING_LATERAL",
     .tags = "kestchain",
     .noun = "1D region",
     .defined = chains,
     .ignoresCase = true},
    {.block = "/DOMAIN/COUPLINGS/COUPLING_LATERAL",
     .tags = "kestplane",
     .noun = "2D region",
     .defined = planes,
     .ignoresCase = true},
    {.block = "/DOMAIN/COUPLINGS/COUPLING_LATERAL",
     .tags = "connections_index",
     .noun = "material",
     .defined = mesh,
     .part = NamePart::items,
     .thing = NamedThing::material,
     .scope = NameScope::plane},

    // Controllers
    {"/DOMAIN/CONTROLLER/MONITORED_VARIABLE", "coefficients", "MANIPULATED_VARIABLE", manipulated,
     NamePart::listName},
    {"/DOMAIN/CONTROLLER/MONITORED_VARIABLE", "root_value_qseries_varname", "MONITORED_VARIABLE",
     monitored},
    {"/DOMAIN/CONTROLLER/MONITORED_VARIABLE", "position", "1D or 2D region", rivers,
     NamePart::region},
    {"/DOMAIN/CONTROLLER/MONITORED_VARIABLE", "position", crossSection, crossSections,
     NamePart::place, NamedThing::tagValue, NameScope::inFront},
    {.block = "/DOMAIN/CONTROLLER/MONITORED_VARIABLE",
     .tags = "position",
     .noun = "STRINGDEF",
     .defined = strings,
     .part = NamePart::place,
     .scope = NameScope::inFront,
     .onlyForType = "Q"},
    {.block = "/DOMAIN/CONTROLLER/MONITORED_VARIABLE",
     .tags = "position",
     .noun = "element",
     .defined = mesh,
     .part = NamePart::place,
     .thing = NamedThing::element,
     .scope = NameScope::inFront,
     .onlyForType = "wse"},
    {"/DOMAIN/CONTROLLER/MANIPULATED_VARIABLE", "position", "1D or 2D region", rivers,
     NamePart::region},
    {"/DOMAIN/CONTROLLER/MANIPULATED_VARIABLE", "position", boundaryOrSource, movable,
     NamePart::place, NamedThing::tagValue, NameScope::inFront},
};

/// Whether `word` is one of `words`, which blanks separate.
bool holdsWord(std::string_view words, std::string_view word) {
  while (!words.empty()) {
    const std::size_t blank = std::min(words.find(' '), words.size());
    if (words.substr(0, blank) == word) {
      return true;
    }
    words.remove_prefix(std::min(blank + 1, words.size()));
  }
  return false;
}

std::string_view parentOf(std::string_view path) {
  return path.substr(0, path.rfind('/'));
}

void addEnds(std::string_view value, NameInValue item, std::vector<NameInValue>& names) {
  const std::size_t colon = value.find(':', item.begin);
  if (colon >= item.end) {
    names.push_back(item);
    return;
  }
  names.push_back({item.begin, colon});
  names.push_back({colon + 1, item.end});
}

}  // namespace

std::span<const Naming> allNamings() {
  return namings;
}

std::vector<const Naming*> namingsOf(std::string_view path, std::string_view tag) {
  std::vector<const Naming*> found;
  for (const Naming& naming : namings) {
    if (naming.block == path && holdsWord(naming.tags, tag)) {
      found.push_back(&naming);
    }
  }
  return found;
}

const DefiningTag* definingTag(std::string_view path, std::string_view tag) {
  for (const Naming& naming : namings) {
    for (const DefiningTag& defined : naming.defined) {
      if (naming.thing == NamedThing::tagValue && defined.block == path && defined.tag == tag) {
        return &defined;
      }
    }
  }
  return nullptr;
}

std::vector<std::string> blocksNamedBy(std::string_view path, std::string_view tag) {
  std::vector<std::string> blocks;
  for (const Naming* naming : namingsOf(path, tag)) {
    for (const DefiningTag& defined : naming->defined) {
      if (naming->thing == NamedThing::tagValue &&
          std::find(blocks.begin(), blocks.end(), defined.block) == blocks.end()) {
        blocks.emplace_back(defined.block);
      }
    }
  }
  return blocks;
}

std::string regionTagOf(const Naming& naming, std::string_view tag) {
  switch (naming.scope) {
    case NameScope::inFront:
      return std::string(tag);
    case NameScope::plane:
      return "kestplane";
    case NameScope::ofInterface: {
      constexpr std::string_view interface = "interface";
      std::string region = "../" + std::string(tag);
      return region.replace(region.find(interface), interface.size(), "subdomain");
    }
    case NameScope::shared:
      break;
  }
  return {};
}

std::string_view sharedBlock(std::string_view path, const DefiningTag& defined) {
  // A block holds what it defines in its parent.
  std::string_view shared = parentOf(defined.block);
  const auto holds = [&shared](std::string_view other) {
    return other.starts_with(shared) &&
           (other.size() == shared.size() || other[shared.size()] == '/');
  };
  while (!shared.empty() && !holds(path)) {
    shared = parentOf(shared);
  }
  return shared;
}

std::vector<NameInValue> namesIn(std::string_view value, NamePart part) {
  constexpr std::string_view blanks = " \t\n\r";
  constexpr std::string_view separators = " \t\n\r()";
  const std::size_t begin = value.find_first_not_of(blanks);
  if (begin == std::string_view::npos) {
    return {};
  }
  const std::size_t end = value.find_last_not_of(blanks) + 1;
  std::vector<NameInValue> names;
  switch (part) {
    case NamePart::whole:
      return {{begin, end}};
    case NamePart::region:
      return {{begin, std::min(value.find('.', begin), end)}};
    case NamePart::place: {
      const std::size_t dot = value.find('.', begin);
      return dot >= end ? names : std::vector<NameInValue>{{dot + 1, end}};
    }
    case NamePart::listName:
      return {{begin, std::min(value.find_first_of(" \t\n\r:", begin), end)}};
    case NamePart::items:
    case NamePart::ends:
      break;
  }
  for (std::size_t at = value.find_first_not_of(separators, begin); at < end;) {
    const std::size_t stop = std::min(value.find_first_of(separators, at), end);
    if (part == NamePart::ends) {
      addEnds(value, {at, stop}, names);
    } else {
      names.push_back({at, stop});
    }
    at = value.find_first_not_of(separators, stop);
  }
  return names;
}

}  // namespace KESTparse
