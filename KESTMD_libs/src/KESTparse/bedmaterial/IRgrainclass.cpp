#include "KESTparse/bedmaterial/IRgrainclass.h"

namespace KESTparse {

void IRgrainclass::getDescription(std::ostream& out) const {
  out << "This block defines the mean diameters of ALL possibly occurring grains of the bed material in millimetres.";
}

void IRgrainclass::createTags() {
  reals<&Self::diameters>(
      "The number of diameters in the list automatically sets the number of grains.")
      .mandatory()
      .unit("[mm]");
}

void IRgrainclass::checkRules() {
  if (!diameters.empty() && !(diameters.front() > 0)) {
    error("Grain sizes must be > 0");
    return;
  }
  for (std::size_t i = 1; i < diameters.size(); ++i) {
    if (diameters[i] < diameters[i - 1]) {
      error("Grain sizes must be in strictly ascending order");
    }
  }
}

}  // namespace KESTparse
