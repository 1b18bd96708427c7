#include "KESTparse/plane2d/IRbedload2d.h"

#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRbedbndr2d.h"
#include "KESTparse/plane2d/IRbedinnerbndr2d.h"
#include "KESTparse/plane2d/IRbedloadDirection.h"
#include "KESTparse/plane2d/IRbedloadFormula2d.h"
#include "KESTparse/plane2d/IRbedparameter2d.h"

namespace KESTparse {

void IRbedload2d::getDescription(std::ostream& out) const {
  out << "Defines all needed data for bed load transport. If this block does not exist, no bed load transport will be simulated.";
}

void IRbedload2d::createSubBlocks() {
  subBlock<&Self::formula_ptr>("FORMULA").mandatory();
  subBlock<&Self::parameter_ptr>("PARAMETER").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").repeatable();
  subBlock<&Self::lat_bedload_ptrV>("DIRECTION").repeatable();
  subBlock<&Self::bedinnerbndr_ptrV>("INNER_BOUNDARY").repeatable();
}

void IRbedload2d::createTags() {}

void IRbedload2d::checkRulesAlways() {
  if (lat_bedload_ptrV.empty()) {
    warning(
        "No block DIRECTION is defined in block BEDLOAD. For morphological simulations a block DIRECTION of type 'lateral_bed_slope' is recommended.");
  }
}

void IRbedload2d::checkRules() {
  if (bndr_ptrV.empty()) {
    warning(
        "No BOUNDARY block has been defined for BEDLOAD. Undefined boundaries are automatically treated as 'wall'.");
  }
  for (const auto& [i, j] : equalPairs(bndr_ptrV, &IRbedbndr2d::string_name)) {
    error(
        "Two morphologic boundaries share the same boundary_string_name '{}' Every BOUNDARY needs a unique boundary_string_name assigned.",
        bndr_ptrV[i]->string_name);
  }
  const std::size_t sharing = pairsSharingName(bedinnerbndr_ptrV, &IRbedinnerbndr2d::string_name1,
                                               &IRbedinnerbndr2d::string_name2)
                                  .size();
  for (std::size_t pair = 0; pair < sharing; ++pair) {
    error(
        "Two inner boundaries share the same boundary_string_name... Every INNER BOUNDARY needs a unique boundary_string_name assigned.");
  }
}

}  // namespace KESTparse
