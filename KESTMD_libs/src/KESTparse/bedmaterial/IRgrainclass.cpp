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

}  // namespace KESTparse
