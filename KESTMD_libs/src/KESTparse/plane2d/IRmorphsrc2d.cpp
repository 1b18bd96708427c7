#include "KESTparse/plane2d/IRmorphsrc2d.h"

#include "KESTparse/plane2d/IRmorphextsrc2d.h"

namespace KESTparse {

void IRmorphsrc2d::getDescription(std::ostream& out) const {
  out << "The SOURCE block for morphology in 2D contains external sources or sinks which can be attached to any computational element(s) with the corresponding node_id(s).";
}

void IRmorphsrc2d::createSubBlocks() {
  subBlock<&Self::extsrc_ptrV>("EXTERNAL_SOURCE").repeatable();
}

void IRmorphsrc2d::createTags() {}

}  // namespace KESTparse
