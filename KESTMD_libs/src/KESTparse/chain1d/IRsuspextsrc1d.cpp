#include "KESTparse/chain1d/IRsuspextsrc1d.h"

namespace KESTparse {

void IRsuspextsrc1d::getDescription(std::ostream& out) const {
  out << "The external source block is used for additional lateral sources beneath the boundary conditions.";
}

void IRsuspextsrc1d::createTags() {
  word<&Self::name>("Unique identifier which is used to define controllers and couplings.")
      .preset("unspecified_name");
  text<&Self::type>("Defines the type of source discharge.")
      .mandatory()
      .preset("undefinedType")
      .oneOf({"sediment_discharge", "coupling_sediment_discharge"});
  seriesFile<&Self::file, &Self::file_table>(
      "Name of the file containing the boundary condition data: time and corresponding concentration [0-1].")
      .mandatory()
      .preset("NoFile.txt")
      .requiredIf("type", {"sediment_discharge"});
  text<&Self::mixture>(
      "Name of a predfined mixture which characterizes the suspended sediment source.")
      .mandatory()
      .preset("undefinedMixture")
      .requiredIf("type", {"sediment_discharge"});
  text<&Self::cross_section>("Name of the cross section to which the source is applied.")
      .mandatory()
      .preset("undefinedCrossSection");
  identifiedBy({"name"});
}

}  // namespace KESTparse
