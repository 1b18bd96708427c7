#include "KESTparse/chain1d/IRcalc1d.h"

#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/chain1d/IRhydr1d.h"
#include "KESTparse/chain1d/IRmorph1d.h"
#include "KESTparse/chain1d/IRoutput1d.h"
#include "KESTparse/chain1d/IRtimestep1d.h"
#include "KESTparse/root/IRdomain.h"

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

Surroundings1d findSurroundings1d(InputBlock& block) {
  const Surroundings1d found{block.ancestor<IRdomain>(), block.ancestor<IRcalc1d>()};
  if (found.domain == nullptr) {
    report(Severity::error, block, {about(block)},
           {"no-domain", "the block does not stand in a DOMAIN", "move it into the block DOMAIN"},
           "No DOMAIN block could be found. Please complete your input data.");
  }
  if (found.calc1d == nullptr) {
    report(Severity::error, block, {about(block)},
           {"no-region", "the block does not stand in a KESTCHAIN_1D",
            "move it into the block KESTCHAIN_1D of its region"},
           "No KESTCHAIN block could be found. Please complete your input data.");
  }
  return found;
}

}  // namespace KESTparse
