#include "KESTparse/subsurface/IRmaterialSub.h"

#include "KESTparse/subsurface/IRsoilSub.h"

namespace KESTparse {

void IRmaterialSub::getDescription(std::ostream& out) const {
  out << "This block defines the characteristics of the material. It contains only inner blocks.";
}

void IRmaterialSub::createSubBlocks() {
  subBlock<&Self::soil_ptrV>("SOIL_DEF").mandatory().repeatable();
}

void IRmaterialSub::createTags() {}

void IRmaterialSub::checkRules() {
  if (soil_ptrV.empty()) {
    error({"no-soil", "MATERIAL has no soil", "add at least one block SOIL_DEF"},
          "No SOIL was defined within the MATERIAL block. At least one soil is required.");
  }
}

}  // namespace KESTparse
