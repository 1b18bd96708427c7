#include "KESTparse/subsurface/IRgeomSub.h"

#include "KESTparse/subsurface/IRzoneSub.h"

namespace KESTparse {

void IRgeomSub::getDescription(std::ostream& out) const {
  out << "Defines the cubic mesh for this 3D-simulation. The cube dimensions and coordinates have to be specified.";
}

void IRgeomSub::createSubBlocks() {
  subBlock<&Self::zones_ptrV>("ZONE").repeatable();
}

void IRgeomSub::createTags() {
  reals<&Self::ref_coordinates>(
      "Reference point of lower, left edge of groundwater lattice. Coordinates (xref, yref, zref) are expected.")
      .mandatory();
  reals<&Self::base_vector_i>(
      "Base vector in i-direction of sub-surface Lattice. Coordinates (i_x, i_y, i_z) are expected.")
      .mandatory();
  reals<&Self::base_vector_j>(
      "Base vector in i-direction of sub-surface Lattice. Coordinates (j_x, j_y, j_z) are expected.")
      .mandatory();
  real<&Self::cell_size>("Size (length) of cubic cells").mandatory().preset("1.0").unit("[m]");
  integer<&Self::no_cells_i>("Number of cells of domain in i-direction")
      .mandatory()
      .preset("1.0")
      .unit("[-]");
  integer<&Self::no_cells_j>("Number of cells of domain in j-direction")
      .mandatory()
      .preset("1.0")
      .unit("[-]");
  integer<&Self::no_cells_k>("Number of cells of domain in vertical k-direction")
      .mandatory()
      .preset("1.0")
      .unit("[-]");
}

}  // namespace KESTparse
