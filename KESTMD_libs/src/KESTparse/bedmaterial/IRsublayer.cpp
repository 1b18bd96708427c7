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
  const auto& material = enclosing<IRbedmat>();
  if (material.grncls_ptr == nullptr) {
    material.reportNoGrainClasses(*this, "No grain classes defined. Please complete your input.");
    return;
  }
  const std::size_t numDiameters = material.numGrainClasses();
  const auto& mixtures = material.mixtr_ptrV;
  if (numDiameters == 0 || mixtures.empty()) {
    return;
  }
  const bool isUnset = mixture == "undefinedMixture";
  const auto reportUnset = [this, &mixtures](fmt::format_string<const std::string&> text) {
    error<&Self::mixture>({"no-mixture", "the layer does not tell which mixture it is made of",
                           "name one of the MIXTURE blocks, such as 'mixture = {0}'"},
                          text, mixtures.front()->name);
  };
  if (numDiameters == 1) {
    const std::string& onlyMixture = mixtures.front()->name;
    if (isUnset) {
      mixture = onlyMixture;
    }
    if (mixture != onlyMixture) {
      report(
          Severity::error, *this,
          {about<&Self::mixture>(*this), about<&IRmixtr::name>(*mixtures.front())},
          {"other-mixture",
           "the layer is made of the mixture '{0}', but with a single grain class there is only '{1}'",
           "write 'mixture = {1}'"},
          "In a LAYER block, the 'mixture' has been set to '{}'. For single grain size simulations, only one mixture definition is allowed. Try using the correct mixture, e.g. 'mixture = {}'",
          mixture, onlyMixture);
    }
  } else if (isUnset && material.dimension() == "1D") {
    reportUnset(
        "'active_layer_mixture' has not been set. Assign one of the mixtures names defined in MIXTURE block to this LAYER definition");
  } else if (isUnset) {
    reportUnset(
        "In LAYER block, active_layer_mixture has not been set. Assign one of the mixtures names defined in MIXTURE block to this LAYER definition");
  } else if (!material.hasMixture(mixture)) {
    error<&Self::mixture>(
        {"unknown-mixture", "there is no MIXTURE named '{0}' in this bed material",
         "name one of the MIXTURE blocks{1}, or define '{0}' in another one"},
        "In LAYER block, active_layer_mixture could not be recognized. Make sure, the active_layer_mixture uses a name which has been defined in one of the MIXTURE blocks",
        mixture, perhaps(mixture, mixtures, &IRmixtr::name));
  }
}

}  // namespace KESTparse
