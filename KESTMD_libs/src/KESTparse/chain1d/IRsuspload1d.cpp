#include "KESTparse/chain1d/IRsuspload1d.h"

#include "KESTparse/chain1d/IRsuspbndr1d.h"
#include "KESTparse/chain1d/IRsuspinit1d.h"
#include "KESTparse/chain1d/IRsuspparam1d.h"
#include "KESTparse/chain1d/IRsuspsrc1d.h"

namespace KESTparse {

void IRsuspload1d::getDescription(std::ostream& out) const {
  out << "In this block all information needed for suspended load transport simulation is described.";
}

void IRsuspload1d::createSubBlocks() {
  subBlock<&Self::susp_param_ptr>("PARAMETER").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").mandatory().repeatable();
  subBlock<&Self::susp_init_ptr>("INITIAL").mandatory();
  subBlock<&Self::src_ptr>("SOURCE");
}

void IRsuspload1d::createTags() {}

void IRsuspload1d::checkRules() {
  if (bndr_ptrV.size() != 2) {
    error("SUSPENDED_LOAD block needs exactly two boundaries defined. ");
  }
}

}  // namespace KESTparse
