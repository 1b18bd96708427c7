#include "KESTparse/plane2d/IRvegBiomass2d.h"

namespace KESTparse {

void IRvegBiomass2d::getDescription(std::ostream& out) const {
  out << "The BIOMASS block for vegetation defines general settings related to the vegetation biomass.";
}

void IRvegBiomass2d::createTags() {
  real<&Self::growth_rate>(
      "Grow rate for the logistic function. The timestep of vegetation growth is the same of morphological calculations.")
      .mandatory()
      .unit("[s^{-1}]");
  real<&Self::lambda_1>("Parameter for Marani et al. (see Reference Manual) function lambda_1.")
      .mandatory()
      .unit("[m^{-1}]");
  real<&Self::lambda_2>("Parameter for Marani et al. (see Reference Manual) function lambda_2.")
      .mandatory()
      .unit("[m^{-1}]");
  real<&Self::z_0>("Parameter for Marani et al. (see Reference Manual) function z_0.")
      .mandatory()
      .unit("[m]");
  real<&Self::maximum_carrying_capacity>(
      "Maximum carrying capacity for the logistic function. To have dimensionless quantities for the biomass, set the maximum carrying capacity to 1 (dafault).")
      .defaultsTo("1");
  reals<&Self::time_veg_growth>(
      "This requires a list of times. Such times define beginning and end of the vegetation growth [ex.")
      .mandatory();
}

}  // namespace KESTparse
