#include "KESTparse/plane2d/IRvegFeedback2d.h"

namespace KESTparse {

void IRvegFeedback2d::getDescription(std::ostream& out) const {
  out << "The FEEDBACK block for vegetation defines general settings related to the interactions between hydromorphodynamics and vegetation.";
}

void IRvegFeedback2d::createTags() {
  real<&Self::theta_critic_veg>(
      "Shields critical parameter due to vegetation. Assumed when the biomass equals its maximum value.")
      .defaultsTo("0.047");
  real<&Self::theta_critic_grain>(
      "Shields critical parameter for the grain, in absence of vegetation. Must be equal to the one defined in the MORPHOLOGY block.")
      .defaultsTo("0.047");
  real<&Self::ks_grain>(
      "Strikler coefficient for the grain, in absence of vegetation. This is the value used to limit sediment transport due to vegetation as well.")
      .mandatory()
      .unit("[m^{1/3}s^{-1}]");
  real<&Self::ks_veg>("Strikler coefficient for the vegetation.")
      .mandatory()
      .unit("[m^{1/3}s^{-1}]");
  real<&Self::z_uprooting>(
      "Soil depth at which uprooting occurs. Plant is removed (B=0) when the cell elevation changes exceed the z_uprooting. This value must be > 0.")
      .mandatory()
      .unit("[m]");
  real<&Self::z_burial>(
      "Sediment deposition needed to kill vegetation due to burial. Not implemented yet.")
      .mandatory()
      .unit("[m]");
}

}  // namespace KESTparse
