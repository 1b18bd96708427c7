#include "KESTparse/bedmaterial/IRmixtr.h"

namespace KESTparse {

void IRmixtr::getDescription(std::ostream& out) const {
  out << "This block allows the definition of a grain mixture.";
}

void IRmixtr::createTags() {
  word<&Self::name>("The name of this mixture is used elsewhere for easy-to-use assignments.")
      .mandatory();
  reals<&Self::volume_fraction>(
      "According to the number of grain diameters from the GRAIN_CLASS, for each class, the percental fraction of volume has to be specified using a value between 0 and 100 %. ...")
      .mandatory()
      .unit("[%]")
      .constraint("[0-100]");
  identifiedBy({"name"});
}

}  // namespace KESTparse
