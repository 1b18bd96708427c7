#include "KESTparse/plane2d/IRmorph2d.h"

#include "KESTparse/plane2d/IRGravitationalTransport.h"
#include "KESTparse/plane2d/IRapparentCohesion.h"
#include "KESTparse/plane2d/IRbedic2d.h"
#include "KESTparse/plane2d/IRbedload2d.h"
#include "KESTparse/plane2d/IRbedmat2d.h"
#include "KESTparse/plane2d/IRmorphparam2d.h"
#include "KESTparse/plane2d/IRmorphsrc2d.h"
#include "KESTparse/plane2d/IRsuspload2d.h"

namespace KESTparse {

void IRmorph2d::getDescription(std::ostream& out) const {
  out << "Defines the morphologic specifications for a simulation with bedload and/or suspended transport.";
}

void IRmorph2d::createSubBlocks() {
  subBlock<&Self::morphparam_ptr>("PARAMETER").mandatory();
  subBlock<&Self::bedmat_ptr>("BEDMATERIAL").mandatory();
  subBlock<&Self::bedload_ptr>("BEDLOAD");
  subBlock<&Self::ic_ptr>("INITIAL").mandatory();
  subBlock<&Self::susp_load_ptr>("SUSPENDED_LOAD");
  subBlock<&Self::gravity_ptr>("GRAVITATIONAL_TRANSPORT");
  subBlock<&Self::src_ptr>("SOURCE");
  subBlock<&Self::apparentcohesion_ptr>("APPARENT_COHESION");
}

void IRmorph2d::createTags() {}

}  // namespace KESTparse
