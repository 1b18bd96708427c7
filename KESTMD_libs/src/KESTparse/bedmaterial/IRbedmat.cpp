#include "KESTparse/bedmaterial/IRbedmat.h"

#include "KESTparse/bedmaterial/IRgrainclass.h"
#include "KESTparse/bedmaterial/IRmixtr.h"
#include "KESTparse/bedmaterial/IRsoildef.h"

namespace KESTparse {

std::size_t IRbedmat::numGrainClasses() const {
  return grncls_ptr == nullptr ? 0 : grncls_ptr->diameters.size();
}

void IRbedmat::checkBedloadFormula(InputBlock& morphology, const std::string& formula) const {
  if (grncls_ptr == nullptr) {
    return;
  }
  if (numGrainClasses() > 1 && isOneOf(formula, {"mpm", "engelundhansen", "rickenmann",
                                                 "smartjaeggi", "vanrijn", "power_law"})) {
    morphology.addError(fmt::format(
        "'diameters' in GRAIN_CLASS block has more than one grain class defined, which is not compatible with the single grain bedload formula '{}'. Please change bedload formula or grain classes!",
        formula));
  }
  if (numGrainClasses() < 2 && isOneOf(formula, {"mpmh", "mpm_multi", "smartjaeggi_multi", "wu"})) {
    morphology.addError(fmt::format(
        "'diameters' in GRAIN_CLASS block has less than two grain classes defined, which is not compatible with the multi-grain bedload formula '{}'. Please change bedload formula or grain classes!",
        formula));
  }
}

void IRbedmat::checkSettlingVelocities(InputBlock& parameter, const std::string& sinkVelocityType,
                                       const std::vector<double>& velocities) const {
  if (grncls_ptr != nullptr && sinkVelocityType == "user_defined_settling_velocities" &&
      velocities.size() != numGrainClasses()) {
    parameter.addError(
        "A settling velocity has to be assigned to each grain class (even if it is not transported in suspension). The number of grain classes and the number of settling velocities do not correspond.");
  }
}

bool IRbedmat::hasMixture(std::string_view name) const {
  return mixtures_.find(name, mixtr_ptrV, &IRmixtr::name).count > 0;
}

void IRbedmat::checkMixtures(PairOrder order) {
  if (numGrainClasses() == 1 && mixtr_ptrV.size() > 1) {
    addError(fmt::format(
        "{} MIXTUREs have been defined although a single grain size simulation is active. A single grain size simulation (exactly one diameter in GRAIN_CLASS defined) supports only one MIXTURE with 'volume_fraction = ( 1.0 )'",
        mixtr_ptrV.size()));
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
    addError(fmt::format(
        "Mixture '{}' has the same name as another mixture. Please change names to avoid a conflict.",
        mixtr_ptrV[i]->name));
  }
}

void IRbedmat::checkSoils() {
  for (const auto& [i, j] : equalPairs(soildef_ptrV, &IRsoildef::name)) {
    addError(fmt::format(
        "Two SOIL_DEF blocks share the same name '{}'. Every SOIL_DEF must have an unique name.",
        soildef_ptrV[i]->name));
  }
}

}  // namespace KESTparse
