#include "KESTparse/plane2d/IRbedload2d.h"

#include "KESTparse/plane2d/IRbedbndr2d.h"
#include "KESTparse/plane2d/IRbedinnerbndr2d.h"
#include "KESTparse/plane2d/IRbedloadDirection.h"
#include "KESTparse/plane2d/IRbedloadFormula2d.h"
#include "KESTparse/plane2d/IRbedparameter2d.h"

namespace KESTparse {

void IRbedload2d::getDescription(std::ostream& out) const {
  out << "Defines all needed data for bed load transport. If this block does not exist, no bed load transport will be simulated.";
}

void IRbedload2d::createSubBlocks() {
  subBlock<&Self::formula_ptr>("FORMULA").mandatory();
  subBlock<&Self::parameter_ptr>("PARAMETER").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").repeatable();
  subBlock<&Self::lat_bedload_ptrV>("DIRECTION").repeatable();
  subBlock<&Self::bedinnerbndr_ptrV>("INNER_BOUNDARY").repeatable();
}

void IRbedload2d::createTags() {}

}  // namespace KESTparse
