#include "KESTparse/chain1d/IRbedbndr1d.h"

namespace KESTparse {

void IRbedbndr1d::getDescription(std::ostream& out) const {
  out << "This block contains information about a boundary condition for bedload transport.";
}

void IRbedbndr1d::createTags() {
  word<&Self::name>("Unique identifier which is used to define controllers or couplings.")
      .preset("unspecified_name");
  text<&Self::type>(
      "sediment_discharge: This boundary condition is based on a sediment-hydrograph describing the bedload inflow at the upstream boundary in time.")
      .mandatory()
      .preset("NoType")
      .oneOf({"sediment_discharge", "coupling_sediment_discharge", "IOUp", "IODown",
              "coupling_IODown", "wall", "transport_capacity", "bed_load_function",
              "sediment_grain_discharge"});
  text<&Self::string>("Defines if the boundary condition is at the upstream or downstream end.")
      .mandatory()
      .preset("NoBoundary")
      .oneOf({"upstream", "downstream"});
  seriesFile<&Self::file, &Self::file_table>(
      "Name of the file containing the time dependent sediment inflow in the case of a boundary of type 'sediment_discharge'.")
      .mandatory()
      .preset("NoBoundaryFile.txt")
      .requiredIf("type", {"sediment_discharge", "bed_load_function"});
  seriesFile<&Self::multiFile, &Self::multiFile_table>(
      "Name of the file containing the time dependent sediment inflow of all grain class in separate columns in the case of a boundary of type 'sediment_grain_discharge'.")
      .repeatable();
  text<&Self::mixture>("Mixture of the material passing the boundary.")
      .mandatory()
      .preset("NoMixtureDefined")
      .requiredIf("type", {"sediment_discharge", "transport_capacity", "bed_load_function"});
  real<&Self::factor>(
      "This factor can be used to modify the inflowing discharge when the boundary condition 'transport_capacity' or 'IOUp' is used.")
      .preset("1.0");
  identifiedBy({"name"});
}

}  // namespace KESTparse
