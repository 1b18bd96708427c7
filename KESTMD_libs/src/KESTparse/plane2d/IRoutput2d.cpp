#include "KESTparse/plane2d/IRoutput2d.h"

#include "KESTparse/plane2d/IRspecout2d.h"

namespace KESTparse {

void IRoutput2d::getDescription(std::ostream& out) const {
  out << "This block contains all sub-blocks which define the desired output data.";
}

void IRoutput2d::createSubBlocks() {
  subBlock<&Self::specout_ptrV>("SPECIAL_OUTPUT").repeatable();
}

void IRoutput2d::createTags() {
  real<&Self::console_time_step>(
      "The console time step defines the time step of the console output during simulation. Setting it to small values may slow down the simulation.")
      .mandatory()
      .unit("[s]")
      .atLeast(0);
  real<&Self::restart_time_step>(
      "The restart time step defines the time interval after which a new solution is written to the restart file.")
      .defaultsTo("1E32")
      .unit("[s]")
      .atLeast(0);
  word<&Self::reference_time>("The reference time is used for special outputs in SMS format.")
      .preset("undefined");
}

void IRoutput2d::initialise() {
  console_time_step = 1.0;
  restart_time_step = noRestartTime;
}

void IRoutput2d::checkRules() {
  if (restart_time_step == noRestartTime) {
    warning<&Self::restart_time_step>(
        {"no-restart-time", "only the last time step will be written to the restart file",
         "give the interval for restart files in s with 'restart_time_step'"},
        "No restart time has been chosen. In this case only the last time step is written to the restart file. ");
  }
}

}  // namespace KESTparse
