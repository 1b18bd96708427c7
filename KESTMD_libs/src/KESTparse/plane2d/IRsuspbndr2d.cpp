#include "KESTparse/plane2d/IRsuspbndr2d.h"

namespace KESTparse {

void IRsuspbndr2d::getDescription(std::ostream& out) const {
  out << "This block defines boundary conditions for suspended load.";
}

void IRsuspbndr2d::createTags() {
  word<&Self::name>("This is the name of the suspension boudary conditions.")
      .preset("unspecified_name");
  text<&Self::type>(
      "suspension_discharge: This inflow boundary condition is based on a sediment-hydrograph describing the suspended inflow at the upstream boundary in time.")
      .mandatory()
      .preset("NoType")
      .oneOf({"suspension_discharge", "out_down", "wall"});
  word<&Self::string_name>(
      "This is the name of the cross section defined in a STRINGDEF block to define where the boudnary condition shall act.")
      .mandatory();
  seriesFile<&Self::file, &Self::file_table>(
      "Name of the file containing the evolution of sediment discharge in time for a inflow 'suspension_discharge' boundary condition.")
      .mandatory()
      .preset("NoBoundaryFile.txt")
      .requiredIf("type", {"suspension_discharge"});
  text<&Self::mixture>(
      "This is the name of the mixture that shall be used for an inflow 'suspension_discharge' boundary condition.")
      .mandatory()
      .preset("NoMixtureDefined")
      .requiredIf("type", {"suspension_discharge"});
  identifiedBy({"name"});
}

}  // namespace KESTparse
