#include "KESTparse/chain1d/IRsrc1d.h"

#include "KESTparse/chain1d/IRextsrc1d.h"

namespace KESTparse {

void IRsrc1d::getDescription(std::ostream& out) const {
  out << "This block defines all local sources.";
}

void IRsrc1d::createSubBlocks() {
  subBlock<&Self::extsrc_ptrV>("EXTERNAL_SOURCE").repeatable();
}

void IRsrc1d::createTags() {}

}  // namespace KESTparse
