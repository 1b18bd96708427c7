#include "KESTparse/plane2d/IRsuspinit2d.h"

#include "KESTparse/framework/ListRules.h"
#include "KESTparse/framework/Rules.h"

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

void IRsuspinit2d::checkRules() {
  if (type == "index_table") {
    checkIndexTable();
  }
  if (type == "continue" &&
      checkRestartFile(*this, {about<&Self::file>(*this), about<&Self::type>(*this)}, file, {})) {
    checkRestartTime(*this, about<&Self::file>(*this), about<&Self::restart_solution_time>(*this),
                     file, restart_solution_time);
  }
}

void IRsuspinit2d::checkIndexTable() {
  if (index.size() != concentration.size()) {
    reportIndexCount<&Self::concentration, &Self::index>(
        *this,
        "The number of values in the index list is not the same as in the concentrations list.");
  }
  if (index.size() != mixture.size()) {
    reportIndexCount<&Self::mixture, &Self::index>(
        *this, "The number of values in the index list is not the same as in the mixtures list.");
  }
  for (std::size_t i = 0; i < concentration.size(); ++i) {
    const double value = concentration[i];
    const Subject item = about<&Self::concentration>(*this, i + 1);
    if (value < 0) {
      report(
          Severity::error, *this, {item},
          {"negative-concentration", "the concentration {0} is negative",
           "give the concentration as a share between 0 and 1"},
          "Negative concentrations in the concentration list for index_table is not allowed. Concentrations are between 0 and 1.",
          value);
    }
    if (value > 1.0) {
      report(
          Severity::error, *this, {item},
          {"concentration-above-one", "the concentration {0} is more than the whole, which is 1",
           "give the concentration as a share between 0 and 1"},
          "Concentrations above 1.0 in the concentration list for index_table is not allowed. Concentrations are between 0 and 1.",
          value);
    }
  }
}

}  // namespace KESTparse
