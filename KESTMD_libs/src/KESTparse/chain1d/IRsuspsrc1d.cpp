#include "KESTparse/chain1d/IRsuspsrc1d.h"

#include "KESTparse/chain1d/IRsuspextsrc1d.h"

namespace KESTparse {

void IRsuspsrc1d::getDescription(std::ostream& out) const {
  out << "The SOURCE block for suspended load in 1D contains external sources for lateral suspended load inflow.";
}

void IRsuspsrc1d::createSubBlocks() {
  subBlock<&Self::extsrc_ptrV>("EXTERNAL_SOURCE").repeatable();
}

void IRsuspsrc1d::createTags() {}

}  // namespace KESTparse
