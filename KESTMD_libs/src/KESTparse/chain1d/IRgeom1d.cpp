#include "KESTparse/chain1d/IRgeom1d.h"

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

}  // namespace KESTparse
