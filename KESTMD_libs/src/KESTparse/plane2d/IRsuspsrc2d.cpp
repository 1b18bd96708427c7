#include "KESTparse/plane2d/IRsuspsrc2d.h"

#include "KESTparse/plane2d/IRsuspextsrc2d.h"

namespace KESTparse {

void IRsuspsrc2d::getDescription(std::ostream& out) const {
  out << "The SOURCE block for suspended load contains external sources for local suspended load inflow. For each such external source, a new inner EXTERNAL_SOURCE block has to be defined.";
}

void IRsuspsrc2d::createSubBlocks() {
  subBlock<&Self::extsrc_ptrV>("EXTERNAL_SOURCE").repeatable();
}

void IRsuspsrc2d::createTags() {}

}  // namespace KESTparse
