#include "KESTparse/chain1d/IRbedic1d.h"

#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRbedic1d::getDescription(std::ostream& out) const {
  out << "This block defines the inital conditions for the morphology. The definition of this block is mandatory.";
}

void IRbedic1d::createTags() {
  text<&Self::type>("This is the type of initial conditions for morphological simulations")
      .mandatory()
      .preset("none")
      .oneOf({"initial_mesh", "continue"});
  fileName<&Self::file>(
      "This is the name of a sediment restart file from a previous simulation with sediment transport.")
      .preset("unspecified_file")
      .usedIf("type", {"continue"});
}

void IRbedic1d::checkRules() {
  if (type == "continue") {
    checkRestartFile(*this, {about<&Self::file>(*this), about<&Self::type>(*this)}, file,
                     {.unsetFile = "unspecified_file", .emptyIsUnset = false, .tellsNote = false});
  }
}

}  // namespace KESTparse
