#include "KESTparse/subsurface/IRsoilSub.h"

#include "KESTparse/bedmaterial/IRretentionmodel.h"
#include "KESTparse/subsurface/IRzoneSub.h"

namespace KESTparse {

void IRsoilSub::getDescription(std::ostream& out) const {
  out << "This block defines the structure of the soil zone and its material properties.";
}

void IRsoilSub::createSubBlocks() {
  subBlock<&Self::zoneSub_ptr_>("ZONE").repeatable();
  subBlock<&Self::retentionmodel_ptr_>("RETENTION_MODEL");
}

void IRsoilSub::createTags() {
  real<&Self::kf>("The hydraulic conductivity of the soil [m/s].")
      .mandatory()
      .preset("0.0001")
      .unit("[m/s]")
      .atLeast(0);
  text<&Self::zone>(
      "Name of the soil zone, where the kf-value and the retention model are applied to.")
      .preset("whole_lattice");
}

void IRsoilSub::checkRules() {
  if (retentionmodel_ptr_ == nullptr) {
    error({"no-retention-model", "the soil does not tell how it retains water",
           "add a block RETENTION_MODEL to SOIL_DEF"},
          "In SOIL_DEF block , a RETENTION_MODEL block must be specified");
  }
}

}  // namespace KESTparse
