#include "KESTparse/subsurface/IRoutputSub.h"

#include "KESTparse/subsurface/IRspecoutSub.h"

namespace KESTparse {

void IRoutputSub::getDescription(std::ostream& out) const {
  out << "This block contains all sub-blocks which define the desired output data.";
}

void IRoutputSub::createSubBlocks() {
  subBlock<&Self::specout_ptrV>("SPECIAL_OUTPUT").repeatable();
}

void IRoutputSub::createTags() {
  real<&Self::output_time_step>(
      "This parameter defines the time interval after which a new restart-file shall be written.")
      .mandatory()
      .preset("10.0")
      .unit("[s]")
      .atLeast(0);
  real<&Self::console_time_step>(
      "The console time step defines the time interval after which a console output during the simulation is displayed.")
      .mandatory()
      .preset("1.0")
      .unit("[s]")
      .atLeast(0);
  real<&Self::restart_time_step>(
      "The restart time defines the time which a new solution is written to the restart file.")
      .defaultsTo("1E32")
      .unit("[s]")
      .atLeast(0);
}

}  // namespace KESTparse
