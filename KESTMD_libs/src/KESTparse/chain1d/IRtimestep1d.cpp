#include "KESTparse/chain1d/IRtimestep1d.h"

namespace KESTparse {

void IRtimestep1d::getDescription(std::ostream& out) const {
  out << "The TIMESTEP block is used to specify numerical parameters related to the time and timestep for the simulation, as time step, total run time, CFL number etc.";
}

void IRtimestep1d::createTags() {
  real<&Self::CFL>(
      "The CFL (Courant-Friedrichs-Lewy) number influences the stability of the computation (value 0.5-1).")
      .mandatory()
      .preset("1.0")
      .unit("[-]")
      .above(0)
      .atMost(2);
  real<&Self::maximum_time_step>(
      "This parameter defines a maximum time step for an explicit simulation.The time step during the simulation cannot exceed this value.")
      .defaultsTo("100.0")
      .unit("[s]")
      .above(0);
  real<&Self::initial_time_step>(
      "In the explicit computation this value is used only for the boundary compatibility check of the new calculated time step.")
      .defaultsTo("0.1")
      .unit("[s]")
      .above(0);
  real<&Self::total_run_time>("This parameter needs to be specified by the user.")
      .mandatory()
      .preset("NO_TOT_TIME")
      .unit("[s]")
      .above(0);
  real<&Self::start_time>(
      "This parameter defines the time (in seconds) when the simulation starts.")
      .defaultsTo("-1.0")
      .unit("[s]");
}

}  // namespace KESTparse
