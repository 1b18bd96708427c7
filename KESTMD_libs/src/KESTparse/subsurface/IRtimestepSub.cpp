#include "KESTparse/subsurface/IRtimestepSub.h"

namespace KESTparse {

void IRtimestepSub::getDescription(std::ostream& out) const {
  out << "The TIMESTEP block is used to specify numerical parameters related to the time and timestep for the simulation.";
}

void IRtimestepSub::createTags() {
  real<&Self::time_step>(
      "Time step size of the simulation. Large time step sizes will lead to faster simulations, but can decrease the accuracy and increase the diffusion.")
      .mandatory()
      .preset("1.0")
      .unit("[s]")
      .above(0);
  real<&Self::total_run_time>("This parameter needs to be specified by the user.")
      .mandatory()
      .preset("100")
      .unit("[s]")
      .above(0);
  real<&Self::start_time>(
      "This parameter defines the time (in seconds) when the simulation starts.")
      .defaultsTo("-1.0")
      .preset("0.0")
      .unit("[s]");
}

}  // namespace KESTparse
