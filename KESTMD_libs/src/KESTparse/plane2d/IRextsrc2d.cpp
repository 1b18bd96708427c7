#include "KESTparse/plane2d/IRextsrc2d.h"

namespace KESTparse {

void IRextsrc2d::getDescription(std::ostream& out) const {
  out << "The external source block is used for additional sources to model inflow or outtake of water without using a boundary condition.";
}

void IRextsrc2d::createTags() {
  word<&Self::name>(
      "The name of an external source is used when sources are coupled to each other.")
      .preset("unspecified_name");
  text<&Self::type>(
      "The usual case is a 'source_discharge'. To couple sources of different domains together, 'coupling_source_discharge' has to be used.")
      .mandatory()
      .preset("undefinedType")
      .oneOf({"source_discharge", "coupling_source_discharge"});
  seriesFile<&Self::file, &Self::file_table>(
      "This is the filename of a .txt-file that describes the discharge in time.")
      .preset("UnspecifiedSourceFile");
  integers<&Self::element_ids>(
      "This requires a list of element numbers (from the grid) for which the external source is applied.");
  integers<&Self::index>(
      "This requires a list of material index (from the grid) for which the external source is applied.");
  identifiedBy({"name"});
}

void IRextsrc2d::checkRules() {
  if (element_ids.empty() && index.empty()) {
    error<&Self::element_ids, &Self::index>(
        {"no-place", "the source does not tell where the water flows in or out",
         "list elements of the mesh in 'element_ids', or material indices in 'index'"},
        "Define 'element_ids' or 'index' for external water source.");
  }
  if (!element_ids.empty() && !index.empty()) {
    error<&Self::index, &Self::element_ids>(
        {"two-places", "the source is placed twice, by 'element_ids' and by 'index'",
         "keep one of the two lists"},
        "'element_ids' and 'index' are defined for external water source. However, not both can be defined, please choose only one of them.");
  }
}

}  // namespace KESTparse
