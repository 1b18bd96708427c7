#include "KESTparse/bedmaterial/IRretentionmodel.h"

namespace KESTparse {

void IRretentionmodel::getDescription(std::ostream& out) const {
  out << "This block defines soil retention model and its parameters needed to asses the apparent cohesion effects of the soil.";
}

void IRretentionmodel::createTags() {
  text<&Self::type>(
      "Two different analytical models to describe the retention curve can be specified.")
      .mandatory()
      .preset("empty")
      .oneOf({"van_genuchten", "brooks_corey"});
  real<&Self::lambda>("Dimensionless soil parameter used for the Brooks-Corey model.")
      .mandatory()
      .preset("2")
      .unit("[-]")
      .above(0)
      .requiredIf("type", {"brooks_corey"});
  real<&Self::l>("Dimensionless soil parameter used for the Brooks-Corey model.")
      .mandatory()
      .preset("2")
      .unit("[-]")
      .above(0)
      .requiredIf("type", {"brooks_corey"});
  real<&Self::n>("Dimensionless soil parameter for the van Genuchten model.")
      .mandatory()
      .preset("2")
      .unit("[-]")
      .above(0)
      .requiredIf("type", {"van_genuchten"});
  real<&Self::alpha>("Dimensionless soil parameter for the van Genuchten model.")
      .mandatory()
      .preset("8")
      .unit("[1/m]")
      .above(0)
      .requiredIf("type", {"van_genuchten"});
  real<&Self::hs>("This parameter specifies the air-entry pressure head of the soil.")
      .defaultsTo("-0.001")
      .unit("[m]")
      .atMost(0);
}

}  // namespace KESTparse
