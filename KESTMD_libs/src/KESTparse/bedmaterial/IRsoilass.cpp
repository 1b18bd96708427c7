#include "KESTparse/bedmaterial/IRsoilass.h"

namespace KESTparse {

void IRsoilass::getDescription(std::ostream& out) const {
  out << "This block is used to assign the soil definitions to their corresponding areas in the topography.";
}

void IRsoilass::createTags() {
  integers<&Self::index>(
      "This is a list of integers corresponding to the material indices in the computational mesh. Note that all indices defined in the mesh must be used here.")
      .mandatory();
  words<&Self::soil>(
      "This is a list of the SOIL names in the same order as defined in the 'index' tag.")
      .mandatory();
  text<&Self::type>(
      "This is the type used for the soil assignment. Currently, only 'index_table' is available.")
      .defaultsTo("index_table")
      .oneOf({"index_table"});
}

void IRsoilass::checkRulesAlways() {
  if (index.size() != soil.size()) {
    error<&Self::soil, &Self::index>(
        {"index-count",
         "the number of soils in 'soil' ({0}) is not that of the material indices in 'index' ({1})",
         "name one SOIL_DEF for each material index, in the same order"},
        "'index' and 'soil' do not have the same numbers of entries. Every index needs a soilname assigned. Make sure, both lists have the same number of entries",
        soil.size(), index.size());
  }
}

}  // namespace KESTparse
