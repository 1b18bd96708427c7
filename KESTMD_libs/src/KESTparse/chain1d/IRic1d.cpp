#include "KESTparse/chain1d/IRic1d.h"

namespace KESTparse {

void IRic1d::getDescription(std::ostream& out) const {
  out << "This block defines the hydraulic initial conditions.";
}

void IRic1d::createTags() {
  text<&Self::type>(
      "dry: The channel is considered to be empty at the beginning of the simulation.")
      .mandatory()
      .preset("dry")
      .oneOf({"dry", "continue", "backwater"});
  fileName<&Self::file>("Name of the file from which the initial condition is read, e.g.")
      .mandatory()
      .preset("unspecified_initial_condition_file")
      .requiredIf("type", {"continue"});
  real<&Self::q_out>("Discharge at the lower boundary at time 0.")
      .mandatory()
      .preset("-100.0")
      .unit("[m3/s]")
      .requiredIf("type", {"backwater"});
  real<&Self::WSE_out>("Water surface elevation at the lower boundary at time 0.")
      .mandatory()
      .preset("-100.0")
      .unit("[m rel.]")
      .requiredIf("type", {"backwater"});
}

}  // namespace KESTparse
