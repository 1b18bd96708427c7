#include "KESTparse/plane2d/IRhydr2d.h"

#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRbndr2d.h"
#include "KESTparse/plane2d/IRfriction2d.h"
#include "KESTparse/plane2d/IRic2d.h"
#include "KESTparse/plane2d/IRinnerboundary2d.h"
#include "KESTparse/plane2d/IRparam2d.h"
#include "KESTparse/plane2d/IRsrc2d.h"
#include "KESTparse/plane2d/IRturbulence2d.h"

namespace KESTparse {

void IRhydr2d::getDescription(std::ostream& out) const {
  out << "Defines the hydraulic specifications for the simulation. This block contains only further sub blocks but no own variables.";
}

void IRhydr2d::createSubBlocks() {
  subBlock<&Self::param_ptr>("PARAMETER").mandatory();
  subBlock<&Self::friction_ptr>("FRICTION").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").repeatable();
  subBlock<&Self::innerbndr_ptrV>("INNER_BOUNDARY").repeatable();
  subBlock<&Self::turbulence_ptr>("TURBULENCE_MODEL");
  subBlock<&Self::ic_ptr>("INITIAL").mandatory();
  subBlock<&Self::src_ptr>("SOURCE");
}

void IRhydr2d::createTags() {}

void IRhydr2d::checkRules() {
  if (bndr_ptrV.empty()) {
    warning(
        "No BOUNDARY block has been defined for HYDRAULICS. Undefined boundaries are automatically treated as 'wall'.");
  }
  for (const auto& [i, j] : equalPairs(bndr_ptrV, &IRbndr2d::string_name)) {
    error(
        "Two hydraulic boundaries share the same boundary_string_name '{}' Every BOUNDARY needs a unique boundary_string_name assigned.",
        bndr_ptrV[i]->string_name);
  }
  for (const auto& [i, j] : pairsSharingName(innerbndr_ptrV, &IRinnerboundary2d::string_name1,
                                             &IRinnerboundary2d::string_name2)) {
    // The name shown is that of the ordinary boundary at this place.
    error(
        "Two inner boundaries share the same boundary_string_name '{}' Every INNER BOUNDARY needs a unique boundary_string_name assigned.",
        i < bndr_ptrV.size() ? bndr_ptrV[i]->string_name : std::string());
  }
}

}  // namespace KESTparse
