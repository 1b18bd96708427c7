#include "KESTparse/plane2d/IRkestplane.h"

#include "KESTparse/plane2d/IRgeom2d.h"
#include "KESTparse/plane2d/IRhydr2d.h"
#include "KESTparse/plane2d/IRmorph2d.h"
#include "KESTparse/plane2d/IRoutput2d.h"
#include "KESTparse/plane2d/IRtimestep2d.h"
#include "KESTparse/plane2d/IRvegetation2d.h"

namespace KESTparse {

void IRkestplane::getDescription(std::ostream& out) const {
  out << "This block includes all information for a 2D simulation.";
}

void IRkestplane::createSubBlocks() {
  subBlock<&Self::geom_ptr>("GEOMETRY").mandatory();
  subBlock<&Self::hydr_ptr>("HYDRAULICS").mandatory();
  subBlock<&Self::morph_ptr>("MORPHOLOGY");
  subBlock<&Self::timestep_ptr>("TIMESTEP").mandatory();
  subBlock<&Self::out_ptr>("OUTPUT").mandatory();
  subBlock<&Self::veg_ptr>("VEGETATION");
}

void IRkestplane::createTags() {
  word<&Self::region_name>(
      "The name of the region has to be specified. It may be used for coupled simulations.")
      .mandatory();
  identifiedBy({"region_name"});
}

}  // namespace KESTparse
