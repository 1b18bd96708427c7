#include "KESTparse/subsurface/IRsrcSub.h"

#include "KESTparse/subsurface/IRextsrcSub.h"

namespace KESTparse {

void IRsrcSub::getDescription(std::ostream& out) const {
  out << "The SOURCE block is a container for EXTERNAL_SOURCE blocks. They are used for additional sources or sinks, sometimes used instead of flux boundary conditions.";
}

void IRsrcSub::createSubBlocks() {
  subBlock<&Self::extsrc_ptrV>("EXTERNAL_SOURCE").repeatable();
}

void IRsrcSub::createTags() {}

}  // namespace KESTparse
