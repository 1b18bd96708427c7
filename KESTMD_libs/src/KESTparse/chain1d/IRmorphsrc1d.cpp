#include "KESTparse/chain1d/IRmorphsrc1d.h"

#include "KESTparse/chain1d/IRmorphextsrc1d.h"

namespace KESTparse {

void IRmorphsrc1d::getDescription(std::ostream& out) const {
  out << "The SOURCE block contains only external sources for sediment transport.For each such external source, a new inner EXTERNAL_SOURCE block has to be defined.";
}

void IRmorphsrc1d::createSubBlocks() {
  subBlock<&Self::extsrc_ptrV>("EXTERNAL_SOURCE").repeatable();
}

void IRmorphsrc1d::createTags() {}

}  // namespace KESTparse
