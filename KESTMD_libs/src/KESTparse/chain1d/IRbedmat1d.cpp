#include "KESTparse/chain1d/IRbedmat1d.h"

#include "KESTparse/bedmaterial/IRgrainclass.h"
#include "KESTparse/bedmaterial/IRmixtr.h"
#include "KESTparse/bedmaterial/IRsoilass.h"
#include "KESTparse/bedmaterial/IRsoildef.h"

namespace KESTparse {

void IRbedmat1d::getDescription(std::ostream& out) const {
  out << "This block defines the characteristics of the bed material.";
}

void IRbedmat1d::createSubBlocks() {
  subBlock<&Self::grncls_ptr>("GRAIN_CLASS").mandatory();
  subBlock<&Self::mixtr_ptrV>("MIXTURE").mandatory().repeatable();
  subBlock<&Self::soildef_ptrV>("SOIL_DEF").mandatory().repeatable();
  subBlock<&Self::soilass_ptr>("SOIL_ASSIGNMENT").mandatory();
}

void IRbedmat1d::createTags() {}

void IRbedmat1d::checkRules() {
  checkMixtures(PairOrder::once);
  checkSoils();
}

}  // namespace KESTparse
