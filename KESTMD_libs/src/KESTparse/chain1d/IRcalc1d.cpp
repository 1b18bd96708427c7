#include "KESTparse/chain1d/IRcalc1d.h"

#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/chain1d/IRhydr1d.h"
#include "KESTparse/chain1d/IRmorph1d.h"
#include "KESTparse/chain1d/IRoutput1d.h"
#include "KESTparse/chain1d/IRtimestep1d.h"

namespace KESTparse {

void IRcalc1d::getDescription(std::ostream& out) const {
  out << "This block includes all information for a 1D simulation.";
}

void IRcalc1d::createSubBlocks() {
  subBlock<&Self::geom_ptr>("GEOMETRY").mandatory();
  subBlock<&Self::hydr_ptr>("HYDRAULICS").mandatory();
  subBlock<&Self::timestep_ptr>("TIMESTEP").mandatory();
  subBlock<&Self::morph_ptr>("MORPHOLOGY");
  subBlock<&Self::out_ptr>("OUTPUT").mandatory();
}

void IRcalc1d::createTags() {
  word<&Self::region_name>("Name of the 1D region.").mandatory();
  identifiedBy({"region_name"});
}

}  // namespace KESTparse
