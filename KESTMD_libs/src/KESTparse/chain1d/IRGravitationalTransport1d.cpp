#include "KESTparse/chain1d/IRGravitationalTransport1d.h"

namespace KESTparse {

void IRGravitationalTransport1d::getDescription(std::ostream& out) const {
  out << "The GRAVITATIONAL_TRANSPORT block for morphology in 1D deals with transport due to longitudinal slope failures.";
}

void IRGravitationalTransport1d::createTags() {
  real<&Self::failure_angle>(
      "A slope failure occurs if the slope between two elements exceeds this critical failure angle.")
      .mandatory()
      .preset("30.0")
      .unit("[Degree]")
      .atLeast(0);
  real<&Self::threshold_angle>(
      "A threshold angle above critical angle that must be exceeded for gravitational transport calculations.")
      .defaultsTo("0.1")
      .unit("[Degree]")
      .atLeast(0);
  integer<&Self::cycle_step>(
      "Specifies the cycle steps for which gravitational transport shall be calculated.")
      .defaultsTo("5")
      .preset("0")
      .atLeast(0);
  integer<&Self::max_iterations>("Abort criteria for gravitational transport calculation.")
      .defaultsTo("10")
      .atLeast(0);
}

}  // namespace KESTparse
