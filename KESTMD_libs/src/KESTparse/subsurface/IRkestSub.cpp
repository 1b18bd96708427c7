#include "KESTparse/subsurface/IRkestSub.h"

#include "KESTparse/subsurface/IRbndrSub.h"
#include "KESTparse/subsurface/IRgeomSub.h"
#include "KESTparse/subsurface/IRicSub.h"
#include "KESTparse/subsurface/IRmaterialSub.h"
#include "KESTparse/subsurface/IRoutputSub.h"
#include "KESTparse/subsurface/IRparamSub.h"
#include "KESTparse/subsurface/IRsrcSub.h"
#include "KESTparse/subsurface/IRtimestepSub.h"

namespace KESTparse {

void IRkestSub::getDescription(std::ostream& out) const {
  out << "This block includes all information for a subsurface LBM simulation.";
}

void IRkestSub::createSubBlocks() {
  subBlock<&Self::geom_ptr>("GEOMETRY").mandatory();
  subBlock<&Self::timestep_ptr>("TIMESTEP").mandatory();
  subBlock<&Self::param_ptr>("PARAMETER").mandatory();
  subBlock<&Self::initial_ptr>("INITIAL").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").repeatable();
  subBlock<&Self::material_ptr>("MATERIAL").mandatory();
  subBlock<&Self::source_ptr>("SOURCE");
  subBlock<&Self::out_ptr>("OUTPUT").mandatory();
}

void IRkestSub::createTags() {
  word<&Self::region_name>(
      "The name of the region has to be specified. It may be used for coupled simulations.")
      .mandatory();
  identifiedBy({"region_name"});
}

}  // namespace KESTparse
