#include "KESTparse/chain1d/IRbedparameter1d.h"

namespace KESTparse {

void IRbedparameter1d::getDescription(std::ostream& out) const {
  out << "This block defines parameters concerning the bedload computation.";
}

void IRbedparameter1d::createTags() {
  real<&Self::upwind>(
      "Defines which part of the sediment flux on the edge is taken from the upstream cross-section.")
      .mandatory()
      .preset("0.6")
      .atLeast(0.5)
      .atMost(1);
  text<&Self::abrasion>(
      "This flag determines if the reduction of sediment volume due to abrasion is computed.")
      .defaultsTo("off")
      .oneOf({"off", "on"});
  integer<&Self::hydro_step>(
      "With this parameter it is possible to compute the new hydraulic situation only each x time steps.")
      .preset("1");
  text<&Self::velocity_area>(
      "Defines which part of the cross section area is taken for the computation of the velocity for the bedload transport u = Q/A.")
      .defaultsTo("general")
      .oneOf({"general", "main", "bottom"});
}

}  // namespace KESTparse
