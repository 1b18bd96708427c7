#include "KESTparse/chain1d/IRhydr1d.h"

#include "KESTparse/chain1d/IRbndr1d.h"
#include "KESTparse/chain1d/IRfriction1d.h"
#include "KESTparse/chain1d/IRic1d.h"
#include "KESTparse/chain1d/IRinnerboundary1d.h"
#include "KESTparse/chain1d/IRparam1d.h"
#include "KESTparse/chain1d/IRsrc1d.h"

namespace KESTparse {

void IRhydr1d::getDescription(std::ostream& out) const {
  out << "Defines the hydraulic specifications for the simulation. This block contains only further sub blocks but no own variables.";
}

void IRhydr1d::createSubBlocks() {
  subBlock<&Self::param_ptr>("PARAMETER").mandatory();
  subBlock<&Self::friction_ptr>("FRICTION").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").mandatory().repeatable();
  subBlock<&Self::ic_ptr>("INITIAL").mandatory();
  subBlock<&Self::src_ptr>("SOURCE");
  subBlock<&Self::innerbndr_ptrV>("INNER_BOUNDARY").repeatable();
}

void IRhydr1d::createTags() {}

}  // namespace KESTparse
