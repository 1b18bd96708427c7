#include "KESTparse/plane2d/IRsuspload2d.h"

#include "KESTparse/plane2d/IRsuspbndr2d.h"
#include "KESTparse/plane2d/IRsuspinit2d.h"
#include "KESTparse/plane2d/IRsuspparam2d.h"
#include "KESTparse/plane2d/IRsuspsrc2d.h"

namespace KESTparse {

void IRsuspload2d::getDescription(std::ostream& out) const {
  out << "Defines all needed data for suspended transport. If this block does not exist, then no suspended transport will be simulated.";
}

void IRsuspload2d::createSubBlocks() {
  subBlock<&Self::susp_param_ptr>("PARAMETER").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").repeatable();
  subBlock<&Self::susp_init_ptr>("INITIAL").mandatory();
  subBlock<&Self::src_ptr>("SOURCE");
}

void IRsuspload2d::createTags() {}

}  // namespace KESTparse
