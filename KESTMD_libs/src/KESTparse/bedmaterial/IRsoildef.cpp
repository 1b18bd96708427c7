#include "KESTparse/bedmaterial/IRsoildef.h"

#include <cmath>

#include "KESTparse/bedmaterial/IRbedmat.h"
#include "KESTparse/bedmaterial/IRgrainclass.h"
#include "KESTparse/bedmaterial/IRsublayer.h"

namespace KESTparse {

void IRsoildef::getDescription(std::ostream& out) const {
  out << "This block defines the structure of the soil. Every soil layer is defined within a LAYER block. Every layer has an own mixture assigned.";
}

void IRsoildef::createSubBlocks() {
  subBlock<&Self::sublay_ptrV>("LAYER").repeatable();
}

void IRsoildef::createTags() {
  word<&Self::name>(
      "This is the name of the soil which can be used elsewhere e.g. for the soil assignment.")
      .mandatory()
      .preset("undefinedName");
  real<&Self::d90_armored_layer>(
      "This tag defines a characteristic grain size 'd90' assuming an armoured layer.")
      .preset("-1.0")
      .unit("[mm]")
      .above(0)
      .mayReturnToPreset();
  real<&Self::tau_erosion_start>(
      "This is a possibility to define a bottom shear stress which has to be exceeded before erosion becomes possible.")
      .defaultsTo("-1.0")
      .unit("[N/m2]");
  identifiedBy({"name"});
}

void IRsoildef::initialise() {
  const auto* const material = dynamic_cast<const IRbedmat*>(getLogicalParent());
  dimension = material == nullptr ? "" : material->dimension();
}

const IRbedmat& IRsoildef::material() const {
  return enclosing<IRbedmat>();
}

void IRsoildef::checkRules() {
  ASSERT(dimension == "1D" || dimension == "2D", "neither 1D nor 2D");
  if (material().grncls_ptr == nullptr) {
    material().reportNoGrainClasses(*this, "No grain classes defined. Please complete your input.");
  } else if (material().numGrainClasses() == 0) {
    reportNoDiameters();
  } else if (material().numGrainClasses() == 1) {
    checkSingleGrain();
  } else {
    checkMultiGrain();
  }
  if (dimension == "1D" && sublay_ptrV.empty()) {
    warning(
        {"no-layer", "the soil '{0}' has no LAYER, so that the bed is fixed wherever it lies",
         "add a LAYER with 'mixture' and 'bottom_elevation', unless the bed shall never erode there"},
        "No LAYER block has been defined in SOIL_DEF. If no LAYER is defined in 1-D simulations, a fixed bed is assumed at this location (deposition and erosion of the deposition is considered though). Make sure you really want a fixed bed there, otherwise just define a LAYER to avoid the fixed bed.",
        name);
  }
}

void IRsoildef::reportNoDiameters() {
  const auto reportAs = [this](fmt::format_string<const std::string&> text) {
    report(Severity::error, *this, {about<&IRgrainclass::diameters>(*material().grncls_ptr)},
           {"no-diameter", "GRAIN_CLASS lists no diameter that the soil '{0}' could be made of",
            "list the mean diameters of all grains in 'diameters'"},
           text, name);
  };
  if (dimension == "1D") {
    reportAs(
        "A fatal error has occured in SOIL_DEF block '{}'. This should never happen.  Something is possibly wrong with GRAIN_CLASS diameter");
  } else {
    reportAs(
        "A fatal error has occured in SOIL_DEF block '{}'. This should never happen. Something is possibly wrong with GRAIN_CLASS diameter");
  }
}

void IRsoildef::checkSingleGrain() {
  constexpr double smallest = 0.01;
  if (dimension == "2D" && std::abs(d90_armored_layer) < smallest) {
    d90_armored_layer = -1.0;
  }
  if (!(d90_armored_layer > 0 && tau_erosion_start > 0)) {
    return;
  }
  const auto reportAs = [this](fmt::format_string<const std::string&> text) {
    error<&Self::d90_armored_layer, &Self::tau_erosion_start>(
        {"two-erosion-thresholds",
         "the soil '{0}' has two thresholds below which it does not erode",
         "keep either 'd90_armored_layer' or 'tau_erosion_start', or none of them"},
        text, name);
  };
  if (dimension == "1D") {
    reportAs(
        "In SOIL_DEF '{}', tag 'd90_armored_layer' and 'tau_erosion_start' are both selected. To avoid conflicts, choose just one of them or none.");
  } else {
    reportAs(
        "In SOIL_DEF '{}', d90_armored_layer and tau_erosion_start have been defined. To avoid conflicts, choose either d90_armored_layer or tau_erosion_start or none of them");
  }
}

void IRsoildef::checkMultiGrain() {
  if (d90_armored_layer > 0) {
    report(
        Severity::error, *this,
        {about<&Self::d90_armored_layer>(*this),
         about<&IRgrainclass::diameters>(*material().grncls_ptr)},
        {"armour-with-several-grains",
         "the armoured layer of the soil '{0}' is possible with one grain class only, but GRAIN_CLASS lists {1}",
         "remove 'd90_armored_layer'"},
        "In SOIL_DEF '{}', d90_armored_layer has been given a non-zero value. Using multi grain size simulations, the definition of d90_armored_layer is not permitted.",
        name, material().numGrainClasses());
  }
  if (tau_erosion_start > 0) {
    warning<&Self::tau_erosion_start>(
        {"threshold-with-several-grains",
         "'tau_erosion_start' of the soil '{0}' holds back all grain classes alike",
         "remove 'tau_erosion_start' if each grain class shall begin to move by itself"},
        "In SOIL_DEF '{}', 'tau_erosion_start' has been given a non-zero value. Be aware that tau_erosion_start is used for multi grain size simulation.",
        name);
  }
}

}  // namespace KESTparse
