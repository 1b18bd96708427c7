#include "KESTparse/bedmaterial/IRbedmat.h"

#include <algorithm>

#include "KESTparse/bedmaterial/IRgrainclass.h"
#include "KESTparse/bedmaterial/IRmixtr.h"
#include "KESTparse/bedmaterial/IRsoildef.h"

namespace KESTparse {

std::size_t IRbedmat::numGrainClasses() const {
  return grncls_ptr == nullptr ? 0 : grncls_ptr->diameters.size();
}

void IRbedmat::reportNoGrainClasses(InputBlock& block, fmt::format_string<> text) const {
  report(
      Severity::error, block, {about(*this)},
      {"no-grain-class", "the bed material has no GRAIN_CLASS block",
       "list the mean diameters of all grains in a GRAIN_CLASS block, such as 'diameters = ( 0.5 2 10 )'"},
      text);
}

void IRbedmat::checkBedloadFormula(InputBlock& morphology, const Subject& tag,
                                   const std::string& formula) const {
  if (grncls_ptr == nullptr) {
    return;
  }
  const Subject diameters = about<&IRgrainclass::diameters>(*grncls_ptr);
  if (numGrainClasses() > 1 && isOneOf(formula, {"mpm", "engelundhansen", "rickenmann",
                                                 "smartjaeggi", "vanrijn", "power_law"})) {
    report(
        Severity::error, morphology, {tag, diameters},
        {"too-many-grain-classes",
         "the bedload formula '{0}' is made for one grain class, but GRAIN_CLASS lists {1}",
         "take a formula for several grain classes, such as 'bedload_formula = mpm_multi', or keep one diameter in GRAIN_CLASS"},
        "'diameters' in GRAIN_CLASS block has more than one grain class defined, which is not compatible with the single grain bedload formula '{}'. Please change bedload formula or grain classes!",
        formula, numGrainClasses());
  }
  if (numGrainClasses() < 2 && isOneOf(formula, {"mpmh", "mpm_multi", "smartjaeggi_multi", "wu"})) {
    report(
        Severity::error, morphology, {tag, diameters},
        {"too-few-grain-classes",
         "the bedload formula '{0}' is made for several grain classes, but GRAIN_CLASS lists only {1}",
         "take a formula for one grain class, such as 'bedload_formula = mpm', or list more diameters in GRAIN_CLASS"},
        "'diameters' in GRAIN_CLASS block has less than two grain classes defined, which is not compatible with the multi-grain bedload formula '{}'. Please change bedload formula or grain classes!",
        formula, numGrainClasses());
  }
}

void IRbedmat::checkSettlingVelocities(InputBlock& parameter, const Subject& tag,
                                       const std::string& sinkVelocityType,
                                       const std::vector<double>& velocities) const {
  if (grncls_ptr != nullptr && sinkVelocityType == "user_defined_settling_velocities" &&
      velocities.size() != numGrainClasses()) {
    report(
        Severity::error, parameter, {tag, about<&IRgrainclass::diameters>(*grncls_ptr)},
        {"settling-velocity-count",
         "the number of settling velocities ({0}) is not that of the diameters in GRAIN_CLASS ({1})",
         "give 'settling_velocities' one value for each diameter, also for grains that are not suspended"},
        "A settling velocity has to be assigned to each grain class (even if it is not transported in suspension). The number of grain classes and the number of settling velocities do not correspond.",
        velocities.size(), numGrainClasses());
  }
}

bool IRbedmat::hasMixture(std::string_view name) const {
  return mixtures_.find(name, mixtr_ptrV, &IRmixtr::name).count > 0;
}

void IRbedmat::checkMixtures(PairOrder order) {
  if (numGrainClasses() == 1 && mixtr_ptrV.size() > 1) {
    report(
        Severity::error, *this,
        {about(*mixtr_ptrV[1]), about(*mixtr_ptrV[0]),
         about<&IRgrainclass::diameters>(*grncls_ptr)},
        {"too-many-mixtures",
         "a single grain class makes a single mixture, but there are {0} MIXTURE blocks",
         "keep one MIXTURE with 'volume_fraction = ( 100 )', or list more diameters in GRAIN_CLASS"},
        "{} MIXTUREs have been defined although a single grain size simulation is active. A single grain size simulation (exactly one diameter in GRAIN_CLASS defined) supports only one MIXTURE with 'volume_fraction = ( 1.0 )'",
        mixtr_ptrV.size());
  }
  if (numGrainClasses() < 2) {
    return;
  }
  std::vector<std::vector<std::string_view>> names(mixtr_ptrV.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (mixtr_ptrV[i]->name != "unnamed_mixture") {
      names[i] = {mixtr_ptrV[i]->name};
    }
  }
  for (const auto& [i, j] : pairsWithSharedKey(names, order)) {
    // A pair that is told in both orders is about the same in both.
    report(
        Severity::error, *this,
        {about<&IRmixtr::name>(*mixtr_ptrV[std::max(i, j)]),
         about<&IRmixtr::name>(*mixtr_ptrV[std::min(i, j)])},
        {"second-mixture-name", "two MIXTURE blocks have the name '{0}'",
         "give each MIXTURE a 'name' of its own"},
        "Mixture '{}' has the same name as another mixture. Please change names to avoid a conflict.",
        mixtr_ptrV[i]->name);
  }
}

void IRbedmat::checkSoils() {
  for (const auto& [i, j] : equalPairs(soildef_ptrV, &IRsoildef::name)) {
    report(Severity::error, *this,
           {about<&IRsoildef::name>(*soildef_ptrV[j]), about<&IRsoildef::name>(*soildef_ptrV[i])},
           {"second-soil-name", "two SOIL_DEF blocks have the name '{0}'",
            "give each SOIL_DEF a 'name' of its own"},
           "Two SOIL_DEF blocks share the same name '{}'. Every SOIL_DEF must have an unique name.",
           soildef_ptrV[i]->name);
  }
}

}  // namespace KESTparse
