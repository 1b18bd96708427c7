#include "KESTparse/subsurface/IRparamSub.h"

namespace KESTparse {

void IRparamSub::getDescription(std::ostream& out) const {
  out << "The PARAMETER block for sub-surface LBM simulations defining simulation parameters as time step, total run time, etc.";
}

void IRparamSub::createTags() {
  text<&Self::type>(
      "Type of LBM approach, either effective saturation formulation 'theta' or 'mixed.Use the 'theta' formulation for homogeneous soils, because it is more stable.")
      .defaultsTo("theta")
      .oneOf({"theta", "mixed"});
  real<&Self::cs_factor>(
      "A free chosable, dimensionless factor influencing the simulation stability. Larger values may lead to more stable but less accurate simulations.")
      .defaultsTo("3.0")
      .unit("[-]")
      .above(0);
  real<&Self::theta_s>("Maximum water content of the soil, equals the soil porosity.")
      .defaultsTo("1.0")
      .unit("[-]");
  real<&Self::theta_r>("Residual water content of the soil.").defaultsTo("0.0").unit("[-]");
  text<&Self::activate_cells>(
      "This parameter determines if cells may be activated during simulations, if material is deposited.")
      .defaultsTo("yes")
      .oneOf({"yes", "no"});
}

}  // namespace KESTparse
