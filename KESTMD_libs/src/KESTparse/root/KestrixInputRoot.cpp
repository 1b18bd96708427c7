#include "KESTparse/root/KestrixInputRoot.h"

#include "KESTparse/root/IRdomain.h"
#include "KESTparse/root/IRproject.h"

namespace KESTparse {

KestrixInputRoot::KestrixInputRoot() : SchemaBlock("KESTRIX", nullptr, true, false) {
  declare();
}

void KestrixInputRoot::getDescription(std::ostream& out) const {
  out << "In the logic of the input syntax, the KESTRIX command file represents the encapsulating root block containing the subblocks PROJECT and DOMAIN which define the setup of your simulation.";
}

void KestrixInputRoot::createSubBlocks() {
  subBlock<&Self::proj_ptr>("PROJECT").mandatory();
  subBlock<&Self::dom_ptr>("DOMAIN").mandatory();
}

void KestrixInputRoot::createTags() {}

}  // namespace KESTparse
