#include "KESTparse/chain1d/IRbedload1d.h"

#include "KESTparse/chain1d/IRbedbndr1d.h"
#include "KESTparse/chain1d/IRbedloadFormula1d.h"
#include "KESTparse/chain1d/IRbedparameter1d.h"

namespace KESTparse {

void IRbedload1d::getDescription(std::ostream& out) const {
  out << "Defines all needed data for bed load transport.";
}

void IRbedload1d::createSubBlocks() {
  subBlock<&Self::parameter_ptr>("PARAMETER").mandatory();
  subBlock<&Self::formula_ptr>("FORMULA").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").mandatory().repeatable();
}

void IRbedload1d::createTags() {}

void IRbedload1d::checkRules() {
  if (bndr_ptrV.size() != 2) {
    error("Exactly two 'BOUNDARY' blocks are required. One 'upstream' and one 'downstream' ");
  } else if (bndr_ptrV[0]->string == bndr_ptrV[1]->string) {
    error("Both 'BOUNDARY' blocks are defined on boundary '{}'", bndr_ptrV[0]->string);
  }
}

}  // namespace KESTparse
