#include "KESTparse/plane2d/IRsuspinit2d.h"

namespace KESTparse {

void IRsuspinit2d::getDescription(std::ostream& out) const {
  out << "This block is used to define initial conditions for the suspended load transport. Every element can be assigned an initial concentration.";
}

void IRsuspinit2d::createTags() {
  text<&Self::type>("There are three ways to define the initial concentrations.")
      .mandatory()
      .oneOf({"clear_water", "index_table", "continue"});
  fileName<&Self::file>("Name of the file containing the concentrations for each element.")
      .mandatory()
      .preset("NoInitialFile.txt")
      .requiredIf("type", {"continue"});
  integers<&Self::index>("List of available material indices")
      .mandatory()
      .requiredIf("type", {"index_table"});
  reals<&Self::concentration>("List of concentrations for the corresponding indices")
      .mandatory()
      .requiredIf("type", {"index_table"});
  words<&Self::mixture>("List of mixtures for the corresponding indices")
      .mandatory()
      .requiredIf("type", {"index_table"});
  real<&Self::restart_solution_time>(
      "This time specifies the time at which the solution is read from the file.")
      .defaultsTo("-1.0")
      .unit("[s]")
      .atLeast(-1)
      .usedIf("type", {"continue"});
}

}  // namespace KESTparse
