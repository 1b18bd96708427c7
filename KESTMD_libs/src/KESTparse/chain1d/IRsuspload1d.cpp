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
    report(Severity::error, *this, {bndr_ptrV.size() > 2 ? about(*bndr_ptrV[2]) : about(*this)},
           {"boundary-count",
            "suspended load needs exactly two BOUNDARY blocks, and SUSPENDED_LOAD has {0}",
            "give one BOUNDARY with 'string = upstream' and one with 'string = downstream'"},
           "SUSPENDED_LOAD block needs exactly two boundaries defined. ", bndr_ptrV.size());
  }
}

}  // namespace KESTparse
