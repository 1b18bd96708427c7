#include "KESTparse/plane2d/IRbedload2d.h"

#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRbedbndr2d.h"
#include "KESTparse/plane2d/IRbedinnerbndr2d.h"
#include "KESTparse/plane2d/IRbedloadDirection.h"
#include "KESTparse/plane2d/IRbedloadFormula2d.h"
#include "KESTparse/plane2d/IRbedparameter2d.h"
#include "KESTparse/plane2d/InnerBoundaries.h"

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
        {"no-direction", "no DIRECTION block says how a lateral bed slope turns the bed load",
         "add a DIRECTION block with 'lateral_transport_type = lateral_bed_slope' and the material indices in 'lateral_index'"},
        "No block DIRECTION is defined in block BEDLOAD. For morphological simulations a block DIRECTION of type 'lateral_bed_slope' is recommended.");
  }
}

void IRbedload2d::checkRules() {
  if (bndr_ptrV.empty()) {
    warning(
        {"no-boundary", "there is no BOUNDARY for the bed load, so that all edges are walls to it",
         "add a BOUNDARY for each string that bed load passes, unless none does"},
        "No BOUNDARY block has been defined for BEDLOAD. Undefined boundaries are automatically treated as 'wall'.");
  }
  for (const auto& [i, j] : equalPairs(bndr_ptrV, &IRbedbndr2d::string_name)) {
    report(
        Severity::error, *this,
        {about<&IRbedbndr2d::string_name>(*bndr_ptrV[j]),
         about<&IRbedbndr2d::string_name>(*bndr_ptrV[i])},
        {"shared-string", "two BOUNDARY blocks of the bed load stand on the string '{0}'",
         "give each BOUNDARY a string of its own"},
        "Two morphologic boundaries share the same boundary_string_name '{}' Every BOUNDARY needs a unique boundary_string_name assigned.",
        bndr_ptrV[i]->string_name);
  }
  for (const auto& [i, j] : pairsSharingName(bedinnerbndr_ptrV, &IRbedinnerbndr2d::string_name1,
                                             &IRbedinnerbndr2d::string_name2)) {
    reportSharedSide(
        *this, *bedinnerbndr_ptrV[i], *bedinnerbndr_ptrV[j],
        "Two inner boundaries share the same boundary_string_name... Every INNER BOUNDARY needs a unique boundary_string_name assigned.",
        {});
  }
}

}  // namespace KESTparse
