#include "KESTparse/bedmaterial/IRbedmat.h"

#include <fmt/core.h>

#include "KESTparse/bedmaterial/IRgrainclass.h"
#include "KESTparse/bedmaterial/IRmixtr.h"
#include "KESTparse/bedmaterial/IRsoildef.h"

namespace KESTparse {

std::size_t IRbedmat::numGrainClasses() const {
  return grncls_ptr == nullptr ? 0 : grncls_ptr->diameters.size();
}

void IRbedmat::checkMixturesAndSoils(PairOrder mixturePairs) {
  const std::size_t numDiameters = numGrainClasses();
  if (numDiameters >= 2) {
    std::vector<std::vector<std::string_view>> names(mixtr_ptrV.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (mixtr_ptrV[i]->name != "unnamed_mixture") {
        names[i] = {mixtr_ptrV[i]->name};
      }
    }
    for (const auto& [i, j] : pairsWithSharedKey(names, mixturePairs)) {
      addError(fmt::format(
          "Mixture '{}' has the same name as another mixture. Please change names to avoid a conflict.",
          mixtr_ptrV[i]->name));
    }
  } else if (numDiameters == 1 && mixtr_ptrV.size() > 1) {
    addError(fmt::format(
        "{} MIXTUREs have been defined although a single grain size simulation is active. A single grain size simulation (exactly one diameter in GRAIN_CLASS defined) supports only one MIXTURE with 'volume_fraction = ( 1.0 )'",
        mixtr_ptrV.size()));
  }
  for (const auto& [i, j] : equalPairs(soildef_ptrV, &IRsoildef::name)) {
    addError(fmt::format(
        "Two SOIL_DEF blocks share the same name '{}'. Every SOIL_DEF must have an unique name.",
        soildef_ptrV[i]->name));
  }
}

void IRbedmat::checkGrainsOf(InputBlock& block, const std::string& formula) const {
  if (grncls_ptr == nullptr) {
    return;
  }
  const std::size_t numDiameters = numGrainClasses();
  if (numDiameters >= 2 && isOneOf(formula, {"mpm", "engelundhansen", "rickenmann", "smartjaeggi",
                                             "vanrijn", "power_law"})) {
    block.addError(fmt::format(
        "'diameters' in GRAIN_CLASS block has more than one grain class defined, which is not compatible with the single grain bedload formula '{}'. Please change bedload formula or grain classes!",
        formula));
  }
  if (numDiameters < 2 && isOneOf(formula, {"mpmh", "mpm_multi", "smartjaeggi_multi", "wu"})) {
    block.addError(fmt::format(
        "'diameters' in GRAIN_CLASS block has less than two grain classes defined, which is not compatible with the multi-grain bedload formula '{}'. Please change bedload formula or grain classes!",
        formula));
  }
}

}  // namespace KESTparse
