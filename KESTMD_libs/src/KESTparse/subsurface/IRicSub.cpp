#include "KESTparse/subsurface/IRicSub.h"

#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRicSub::getDescription(std::ostream& out) const {
  out << "Defines initial conditions for subsurface LBM simulations. Initial conditions can either be constant values / hydrostatic distribution, or a restart from an old simulation result.";
}

void IRicSub::createTags() {
  text<&Self::type>("theta: Specify a constant, initial moisture content within the lattice.")
      .mandatory()
      .preset("saturation")
      .oneOf({"theta", "pressure", "hydrostatic", "continue"});
  fileName<&Self::file>(
      "This is the filename of a continue-file. This file must be given in ASCII format.")
      .defaultsTo("restart_sub.sim")
      .requiredIf("type", {"continue"});
  real<&Self::restart_start_time>(
      "This parameter allows to define a start time for the restart of the simulation. The simulation is started beginning from the specified time.")
      .defaultsTo("0.0")
      .unit("[s]")
      .atLeast(-1)
      .usedIf("type", {"continue"});
  real<&Self::value>(
      "Value for initial condition. Can either be a saturation [-] or a pressure head [m], depending upon what is set as 'type'.")
      .mandatory()
      .preset("0.0")
      .unit("[-/m]")
      .usedIf("type", {"theta", "pressure", "hydrostatic"});
}

void IRicSub::checkRules() {
  if (type == "continue") {
    checkRestartFile(*this, {about<&Self::file>(*this), about<&Self::type>(*this)}, file, {});
  }
}

}  // namespace KESTparse
