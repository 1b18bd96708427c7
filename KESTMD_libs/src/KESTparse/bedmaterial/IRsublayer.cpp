#include "KESTparse/bedmaterial/IRsublayer.h"

#include "KESTparse/bedmaterial/IRbedmat.h"
#include "KESTparse/bedmaterial/IRmixtr.h"
#include "KESTparse/bedmaterial/IRsoildef.h"

namespace KESTparse {

void IRsublayer::getDescription(std::ostream& out) const {
  out << "This block defines a soil layer. For every soil layer, a new block has to be used. The bottom elevation is relative to the surface topography defined in the geometry file. Therefore, a minus-sign has to be used.";
}

void IRsublayer::createTags() {
  word<&Self::mixture>(
      "This is the name of the soil mixture as it is defined in the MIXTURE block.")
      .mandatory()
      .preset("undefinedMixture");
  real<&Self::bottom_elevation>(
      "The bottom elevation is expected to be relative to surface. Therefore, it is always a negative number.")
      .mandatory()
      .preset("1000000.0")
      .unit("[m]")
      .atMost(0);
}

void IRsublayer::checkRules() {
  const auto* const soil = ancestor<IRsoildef>();
  const auto* const material = ancestor<IRbedmat>();
  if (soil == nullptr || material == nullptr || material->grncls_ptr == nullptr) {
    error("No grain classes defined. Please complete your input.");
    return;
  }
  const std::size_t numDiameters = material->numGrainClasses();
  const auto& mixtures = material->mixtr_ptrV;
  if (numDiameters == 0 || mixtures.empty()) {
    return;
  }
  const bool isUnset = mixture == "undefinedMixture";
  if (numDiameters == 1) {
    const std::string& onlyMixture = mixtures.front()->name;
    if (isUnset) {
      mixture = onlyMixture;
    }
    if (mixture != onlyMixture) {
      error(
          "In a LAYER block, the 'mixture' has been set to '{}'. For single grain size simulations, only one mixture definition is allowed. Try using the correct mixture, e.g. 'mixture = {}'",
          mixture, onlyMixture);
    }
  } else if (isUnset && soil->dimension == "1D") {
    error(
        "'active_layer_mixture' has not been set. Assign one of the mixtures names defined in MIXTURE block to this LAYER definition");
  } else if (isUnset) {
    error(
        "In LAYER block, active_layer_mixture has not been set. Assign one of the mixtures names defined in MIXTURE block to this LAYER definition");
  } else if (!material->hasMixture(mixture)) {
    error(
        "In LAYER block, active_layer_mixture could not be recognized. Make sure, the active_layer_mixture uses a name which has been defined in one of the MIXTURE blocks");
  }
}

}  // namespace KESTparse
