#include "KESTparse/plane2d/IRvegic2d.h"

#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRvegic2d::getDescription(std::ostream& out) const {
  out << "This block defines the inital conditions for the vegetation. The definition of this block is mandatory.";
}

void IRvegic2d::createTags() {
  text<&Self::type>("This is the type of initial conditions for vegetation")
      .mandatory()
      .preset("none")
      .oneOf({"continue", "index_table"});
  fileName<&Self::file>(
      "This is the name of a restart file from a previous simulation with vegetation. This file must be given in the HDF5 format.")
      .preset("unspecified_file")
      .usedIf("type", {"continue"});
  real<&Self::restart_solution_time>(
      "This time specifies the time at which the solution is read from the file.")
      .defaultsTo("-1.0")
      .preset("0.0")
      .unit("[s]")
      .atLeast(-1)
      .usedIf("type", {"continue"});
  integers<&Self::indexGrow>(
      "This is a list of integers representing the material indices defined in the computational mesh (.2dm file), where vegetation can grow.")
      .mandatory()
      .requiredIf("type", {"continue"});
  integers<&Self::index>(
      "This is a list of integers representing the material indices defined in the computational mesh (.2dm file), where vegetation can grow.")
      .mandatory()
      .requiredIf("type", {"index_table"});
  real<&Self::B>(
      "This is a list of values for the vegetation biomass corresponding to the list of material indices.")
      .mandatory()
      .atLeast(0)
      .requiredIf("type", {"index_table"});
}

void IRvegic2d::checkRules() {
  const RestartFileWords words{
      .unsetFile = "unspecified_file", .showsNameAsGiven = true, .tellsNote = false};
  if (type == "continue" &&
      checkRestartFile(*this, {about<&Self::file>(*this), about<&Self::type>(*this)}, file,
                       words)) {
    checkRestartTime(*this, about<&Self::file>(*this), about<&Self::restart_solution_time>(*this),
                     file, restart_solution_time);
  }
}

}  // namespace KESTparse
