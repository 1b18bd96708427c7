#include "KESTparse/plane2d/IRgeombc2d.h"

namespace KESTparse {

void IRgeombc2d::getDescription(std::ostream& out) const {
  out << "A moving geometrical boundary condition. Defines nodes of the hydraulic grid that move (vertically only) with time. The movement can be regarded as 'enforced' erosion or aggradation.";
}

void IRgeombc2d::createTags() {
  seriesFile<&Self::file, &Self::file_table>(
      "Filename of the ascii-file containing the information about the moving bed.")
      .mandatory()
      .preset("UnspecifiedBoundaryFile");
}

}  // namespace KESTparse
