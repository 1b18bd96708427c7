#include "KESTparse/chain1d/IRgeom1d.h"

#include <algorithm>

#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRgeom1d::getDescription(std::ostream& out) const {
  out << "Defines the problem topography using different input formats.";
}

void IRgeom1d::createTags() {
  text<&Self::type>(
      "Data types for cross sections: other types than the 'kestrix' format are not accepted any more.")
      .defaultsTo("kestrix")
      .oneOf({"kestrix"});
  fileName<&Self::file>(
      "Name of the topography file containing the data of the cross sections. Within this input file, all cross sections are defined.")
      .mandatory();
  words<&Self::cross_section_order>(
      "List of names of cross sections defined within the topography file which should be used in the calculation.")
      .mandatory();
  boolean<&Self::dump_crosssections>(
      "During the transition from varlen to the new kgf format as new grid format, this option is offered to dump a lot of information for each cross section and for each slice.")
      .defaultsTo("no");
}

int IRgeom1d::crossSectionIndex(std::string_view name) const {
  const NameIndex::Places places = crossSections(name);
  return places.count == 0 ? -1 : static_cast<int>(places.first);
}

NameIndex::Places IRgeom1d::crossSections(std::string_view name) const {
  return crossSections_.find(
      name, cross_section_order.size(),
      [this](std::size_t i) -> std::string_view { return cross_section_order[i]; });
}

void IRgeom1d::requireCrossSection(InputBlock& source, std::initializer_list<Subject> tagAndDemand,
                                   const std::string& name) const {
  if (crossSectionIndex(name) != -1) {
    return;
  }
  static constexpr char text[] =
      "Cross section '{}' for qlateral EXTERNAL_SOURCE could not be found in the cross-section order.  Use the exact name of the cross section as defined in GEOMETRY 'cross_section_order'";
  if (source.hasTag("cross_section")) {
    report(Severity::error, source, {*tagAndDemand.begin()},
           {"unknown-cross-section", "there is no cross section '{0}' in this region",
            "name a cross section of 'cross_section_order' in GEOMETRY{1}, or add '{0}' there"},
           text, name, perhaps(name, cross_section_order));
  } else {
    report(Severity::error, source, tagAndDemand,
           {"no-cross-section", "the source does not tell at which cross section it acts",
            "name in 'cross_section' a cross section of 'cross_section_order' in GEOMETRY"},
           text, name);
  }
}

void IRgeom1d::checkRulesAlways() {
  if (isOneOf(type, {"varlen", "hecras"})) {
    warning<&Self::type>(
        {"old-format", "topography files of type '{0}' are not read any more",
         "convert the topography file, and set 'type = kestrix'"},
        "The grid format '{}' is deprecated and is not supported any more. Please convert your projects to the 'kestrix' format. You can download python-scripts which you can use as converters for your grid files from our website.",
        type);
  }
  const std::string path = resolvePath(file);
  if (!canOpen(path)) {
    error<&Self::file>(
        {"missing-file", "the topography file '{1}' does not exist or cannot be opened",
         "correct the name in 'file', or put the topography file there"},
        "topography file '{}' does not exist. Please give a valid file name for the topography file. Note: Relative path can be inserted manually, e.g. ../gridFolder/grid.2dm (not over the 'load file' botton).",
        path, file);
  }
}

}  // namespace KESTparse
