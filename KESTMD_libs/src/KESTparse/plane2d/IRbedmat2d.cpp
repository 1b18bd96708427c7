#include "KESTparse/plane2d/IRbedmat2d.h"

#include "KESTparse/bedmaterial/IRgrainclass.h"
#include "KESTparse/bedmaterial/IRmixtr.h"
#include "KESTparse/bedmaterial/IRretentionmodel.h"
#include "KESTparse/bedmaterial/IRsoilass.h"
#include "KESTparse/bedmaterial/IRsoildef.h"
#include "KESTparse/plane2d/IRfixbed2d.h"

namespace KESTparse {

void IRbedmat2d::getDescription(std::ostream& out) const {
  out << "This block defines the characteristics of the bed material. It contains only inner blocks.";
}

void IRbedmat2d::createSubBlocks() {
  subBlock<&Self::grncls_ptr>("GRAIN_CLASS").mandatory();
  subBlock<&Self::mixtr_ptrV>("MIXTURE").mandatory().repeatable();
  subBlock<&Self::soildef_ptrV>("SOIL_DEF").mandatory().repeatable();
  subBlock<&Self::soilass_ptr>("SOIL_ASSIGNMENT").mandatory();
  subBlock<&Self::fixbed_ptr>("FIXED_BED");
  subBlock<&Self::retentionmodel_ptr>("RETENTION_MODEL");
}

void IRbedmat2d::createTags() {}

void IRbedmat2d::checkRules() {
  checkMixtures(PairOrder::both);
  checkSoils();
}

}  // namespace KESTparse
