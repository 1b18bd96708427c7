#include "KESTparse/plane2d/IRvegetation2d.h"

#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRvegBiomass2d.h"
#include "KESTparse/plane2d/IRvegFeedback2d.h"
#include "KESTparse/plane2d/IRvegGroundwater2d.h"
#include "KESTparse/plane2d/IRvegParameter2d.h"
#include "KESTparse/plane2d/IRvegic2d.h"

namespace KESTparse {

void IRvegetation2d::getDescription(std::ostream& out) const {
  out << "Defines the vegetation specifications for the simulation.";
}

void IRvegetation2d::createSubBlocks() {
  subBlock<&Self::vegGroundwater_ptr>("GROUNDWATER").mandatory();
  subBlock<&Self::vegFeedback_prt>("FEEDBACK").mandatory();
  subBlock<&Self::vegBiomass_ptr>("BIOMASS").mandatory();
  subBlock<&Self::vegParameter_ptr>("PARAMETER").mandatory();
  subBlock<&Self::vegic_ptr>("INITIAL").mandatory();
}

void IRvegetation2d::createTags() {}

InputBlock& IRvegetation2d::addBlock(std::unique_ptr<InputBlock> child) {
  return getLogicalBlockPosition(child->getName()) < 0 ? takeBlock(std::move(child))
                                                       : SchemaBlock::addBlock(std::move(child));
}

void IRvegetation2d::removeBlock(InputBlock& child) {
  ASSERT(isOneOf(child.getName(), {"GROUNDWATER", "BIOMASS", "PARAMETERS", "FEEDBACKS", "INITIAL"}),
         "unknown block");
  SchemaBlock::removeBlock(child);
}

}  // namespace KESTparse
