#include "KESTparse/chain1d/IRsuspinit1d.h"

#include "KESTparse/bedmaterial/IRmixtr.h"
#include "KESTparse/chain1d/IRbedmat1d.h"
#include "KESTparse/chain1d/IRmorph1d.h"
#include "KESTparse/framework/Rules.h"

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

void IRsuspinit1d::checkRules() {
  if (type != "global_value") {
    return;
  }
  if (mixture == "noMixtureDefinedYet") {
    error<&Self::mixture, &Self::type>(
        {"no-mixture", "the suspended load at the start has no mixture",
         "name in 'mixture' one of the MIXTURE blocks in BEDMATERIAL"},
        "The tag 'mixture' has not yet been set. Please assign one of the mixtures names defined in BEDMATERIAL block to this tag.");
    return;
  }
  const IRbedmat1d* const material = enclosing<IRmorph1d>().bedmat_ptr;
  if (material != nullptr && !material->hasMixture(mixture)) {
    error<&Self::mixture>(
        {"unknown-mixture", "there is no MIXTURE named '{0}' in this region",
         "name one of the MIXTURE blocks in BEDMATERIAL{1}, or define '{0}' there"},
        "The mixture '{}' is not defined in the BEDMATERIAL block. Please define this mixture or choose a mixture that already exists!",
        mixture, perhaps(mixture, material->mixtr_ptrV, &IRmixtr::name));
  }
}

}  // namespace KESTparse
