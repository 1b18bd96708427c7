#include "KESTparse/chain1d/IRsuspinit1d.h"

namespace KESTparse {

void IRsuspinit1d::getDescription(std::ostream& out) const {
  out << "Unlike for bed load, for suspended load it is necessary to specify initial conditions. The initial concentrations have to be defined for each cross section. This is done in a separate file, similar to the initial condition file for hydraulics.";
}

void IRsuspinit1d::createTags() {
  text<&Self::type>(
      "There are two ways to define the initial concentrations of suspended sediments")
      .mandatory()
      .preset("file")
      .oneOf({"file", "global_value"});
  fileName<&Self::file>("Name of the file containing the initial conditions.")
      .mandatory()
      .requiredIf("type", {"file"});
  real<&Self::concentration>(
      "initial volume concentration (m3 sediment per m3 water) [-] for all cross sections")
      .mandatory()
      .preset("0.0")
      .unit("[-]")
      .atLeast(0)
      .requiredIf("type", {"global_value"});
  text<&Self::mixture>("initial mixture of suspended load for all cross sections")
      .mandatory()
      .preset("noMixtureDefinedYet")
      .requiredIf("type", {"global_value"});
}

}  // namespace KESTparse
