#include "KESTparse/plane2d/IRsrc2d.h"

#include "KESTparse/plane2d/IRextsrc2d.h"

namespace KESTparse {

void IRsrc2d::getDescription(std::ostream& out) const {
  out << "The SOURCE block is a container for EXTERNAL_SOURCE blocks. They are used for additional sources or sinks, sometimes used instead of flux boundary conditions.";
}

void IRsrc2d::createSubBlocks() {
  subBlock<&Self::extsrc_ptrV>("EXTERNAL_SOURCE").repeatable();
}

void IRsrc2d::createTags() {}

}  // namespace KESTparse
