#include "KESTparse/plane2d/IRsuspextsrc2d.h"

namespace KESTparse {

void IRsuspextsrc2d::getDescription(std::ostream& out) const {
  out << "The external source block is used for additional sources of suspended material in the region.";
}

void IRsuspextsrc2d::createTags() {
  word<&Self::name>(
      "This is the name of the external source. It will be used for coupling between domains. However, coupling for suspended material is not implemented yet.")
      .preset("unspecified_name");
  text<&Self::type>("The only choice for the type of the source is 'suspended_discharge'.")
      .mandatory()
      .preset("undefinedType")
      .oneOf({"suspended_discharge"});
  seriesFile<&Self::file, &Self::file_table>(
      "This is the name of the file containing the time and corresponding total volume [m3] for the suspended source.")
      .mandatory()
      .preset("NoFile.txt");
  text<&Self::mixture>("This is the name of the mixture of the external source.")
      .mandatory()
      .preset("undefinedMixture");
  integers<&Self::element_ids>(
      "This is a list of element numbers where the external source shall act.")
      .mandatory();
  identifiedBy({"name"});
}

}  // namespace KESTparse
