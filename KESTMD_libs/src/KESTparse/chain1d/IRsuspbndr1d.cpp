#include "KESTparse/chain1d/IRsuspbndr1d.h"

namespace KESTparse {

void IRsuspbndr1d::getDescription(std::ostream& out) const {
  out << "Defines boundary conditions for suspended load. If no boundary condition is specified for part of or the whole boundary, an infinite wall is assumed.";
}

void IRsuspbndr1d::createTags() {
  word<&Self::name>("Unique identifier which is used to define controllers or couplings.")
      .preset("unspecified_name");
  text<&Self::type>(
      "suspension_discharge: This boundary condition is based on a sediment-hydrograph describing the suspended inflow at the upstream boundary in time.")
      .mandatory()
      .preset("NoType")
      .oneOf({"suspension_discharge", "coupling_suspension_discharge", "out_down",
              "coupling_out_down", "wall"});
  text<&Self::string>("Defines if the boundary is at the upstream or downstream end.")
      .mandatory()
      .preset("NoBoundary")
      .oneOf({"upstream", "downstream"});
  seriesFile<&Self::file, &Self::file_table>(
      "Name of the file containing times and corresponding concentrations of the inflow water.")
      .mandatory()
      .preset("NoBoundaryFile.txt")
      .requiredIf("type", {"suspension_discharge"});
  text<&Self::mixture>("Name of the inflowing mixture.")
      .mandatory()
      .preset("NoMixtureDefined")
      .requiredIf("type", {"suspension_discharge"});
  identifiedBy({"name"});
}

}  // namespace KESTparse
