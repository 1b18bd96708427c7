#include "KESTparse/plane2d/IRbedbndr2d.h"

#include "KESTparse/base/Conversions.h"

namespace KESTparse {

void IRbedbndr2d::getDescription(std::ostream& out) const {
  out << "Defines boundary conditions for the bed load transport.";
}

void IRbedbndr2d::createTags() {
  word<&Self::name>("Unique identifier which is used for the coupling of domains.")
      .preset("unspecified_name");
  text<&Self::type>("This is the type of the boundary condition.")
      .mandatory()
      .preset("NoType")
      .oneOf({"sediment_discharge", "coupling_sediment_discharge", "transport_capacity", "IOUp",
              "IODown", "coupling_IODown"});
  word<&Self::string_name>(
      "This is the name of a cross string defined in the STRINGDEF block. It defines where the boundary conditions acts.")
      .mandatory();
  seriesFile<&Self::file, &Self::file_table>(
      "This is the file name containing the sediment inflow in [m3/s]. The file needs 2 columns, time and inflow.")
      .mandatory()
      .preset("NoBoundaryFile.txt")
      .requiredIf("type", {"sediment_discharge"});
  text<&Self::mixture>("This is the name of the desired mixture for the sediment inflow.")
      .mandatory()
      .preset("NoMixtureDefined")
      .requiredIf("type", {"sediment_discharge", "transport_capacity", "IOUp"});
  real<&Self::factor>(
      "Factor to calibrate the 'transport_capacity' boundary.The inflowing equilibrium sediment is multiplied with this factor.")
      .defaultsTo("1.0")
      .usedIf("type", {"transport_capacity"});
  real<&Self::fraction_boundary>(
      "This factor can be used for 'IOUp' and 'IODown' boundary conditions.")
      .defaultsTo("1.0")
      .atMost(1)
      .usedIf("type", {"IOUp", "IODown"});
  identifiedBy({"name"});
}

void IRbedbndr2d::checkRules() {
  // A negative fraction asks for the default of its type.
  const std::string upperType = toUpper(type);
  if (upperType == "IOUP" && fraction_boundary < 0) {
    fraction_boundary = 1.0;
  } else if (upperType == "IODOWN" && fraction_boundary < 0) {
    fraction_boundary = 0.9;
  }
}

}  // namespace KESTparse
