#include "KESTparse/bedmaterial/IRsublayer.h"

namespace KESTparse {

void IRsublayer::getDescription(std::ostream& out) const {
  out << "This block defines a soil layer. For every soil layer, a new block has to be used. The bottom elevation is relative to the surface topography defined in the geometry file. Therefore, a minus-sign has to be used.";
}

void IRsublayer::createTags() {
  word<&Self::mixture>(
      "This is the name of the soil mixture as it is defined in the MIXTURE block.")
      .mandatory()
      .preset("undefinedMixture");
  real<&Self::bottom_elevation>(
      "The bottom elevation is expected to be relative to surface. Therefore, it is always a negative number.")
      .mandatory()
      .preset("1000000.0")
      .unit("[m]")
      .atMost(0);
}

}  // namespace KESTparse
