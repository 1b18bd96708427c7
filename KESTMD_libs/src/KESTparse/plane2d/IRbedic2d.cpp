#include "KESTparse/plane2d/IRbedic2d.h"

#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRbedic2d::getDescription(std::ostream& out) const {
  out << "This block defines the inital conditions for the morphology. The definition of this block is mandatory.";
}

void IRbedic2d::createTags() {
  text<&Self::type>("This is the type of initial conditions for bedload transport")
      .mandatory()
      .preset("none")
      .oneOf({"initial_mesh", "continue"});
  fileName<&Self::file>(
      "This is the name of a sediment restart file from a previous simulation with sediment transport. This file must be given in the HDF5 format.")
      .preset("unspecified_file")
      .usedIf("type", {"continue"});
  real<&Self::restart_solution_time>(
      "This time specifies the time at which the solution is read from the file.")
      .defaultsTo("-1.0")
      .preset("0.0")
      .unit("[s]")
      .atLeast(-1)
      .usedIf("type", {"continue"});
}

void IRbedic2d::checkRules() {
  if (type == "continue" &&
      checkRestartFile(*this, {about<&Self::file>(*this), about<&Self::type>(*this)}, file,
                       {.unsetFile = "unspecified_file"})) {
    checkRestartTime(*this, about<&Self::file>(*this), about<&Self::restart_solution_time>(*this),
                     file, restart_solution_time);
  }
}

}  // namespace KESTparse
