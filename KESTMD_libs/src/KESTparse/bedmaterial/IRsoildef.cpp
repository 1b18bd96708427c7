#include "KESTparse/bedmaterial/IRsoildef.h"

#include "KESTparse/bedmaterial/IRsublayer.h"

namespace KESTparse {

void IRsoildef::getDescription(std::ostream& out) const {
  out << "This block defines the structure of the soil. Every soil layer is defined within a LAYER block. Every layer has an own mixture assigned.";
}

void IRsoildef::createSubBlocks() {
  subBlock<&Self::sublay_ptrV>("LAYER").repeatable();
}

void IRsoildef::createTags() {
  word<&Self::name>(
      "This is the name of the soil which can be used elsewhere e.g. for the soil assignment.")
      .mandatory()
      .preset("undefinedName");
  real<&Self::d90_armored_layer>(
      "This tag defines a characteristic grain size 'd90' assuming an armoured layer.")
      .preset("-1.0")
      .unit("[mm]")
      .above(0);
  real<&Self::tau_erosion_start>(
      "This is a possibility to define a bottom shear stress which has to be exceeded before erosion becomes possible.")
      .defaultsTo("-1.0")
      .unit("[N/m2]");
  identifiedBy({"name"});
}

}  // namespace KESTparse
