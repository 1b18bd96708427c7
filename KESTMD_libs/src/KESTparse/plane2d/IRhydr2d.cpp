#include "KESTparse/plane2d/IRhydr2d.h"

#include <algorithm>

#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRbndr2d.h"
#include "KESTparse/plane2d/IRextsrc2d.h"
#include "KESTparse/plane2d/IRfriction2d.h"
#include "KESTparse/plane2d/IRic2d.h"
#include "KESTparse/plane2d/IRinnerboundary2d.h"
#include "KESTparse/plane2d/IRparam2d.h"
#include "KESTparse/plane2d/IRsrc2d.h"
#include "KESTparse/plane2d/IRturbulence2d.h"
#include "KESTparse/plane2d/InnerBoundaries.h"

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

const IRbndr2d* IRhydr2d::findBoundary(std::string_view string_name) const {
  const auto places = boundaries_.find(string_name, bndr_ptrV, &IRbndr2d::string_name);
  if (places.count == 0) {
    throw fmt::format("boundary {} does not exist.", string_name);
  }
  return bndr_ptrV[places.first];
}

const IRinnerboundary2d* IRhydr2d::findInnerBoundary(std::string_view string_name1) const {
  const auto places =
      innerBoundaries_.find(string_name1, innerbndr_ptrV, &IRinnerboundary2d::string_name1);
  if (places.count == 0) {
    throw fmt::format("inner boundary {} does not exist.", string_name1);
  }
  return innerbndr_ptrV[places.first];
}

const IRextsrc2d* IRhydr2d::findExternalSource(std::string_view name) const {
  return src_ptr == nullptr ? nullptr
                            : findUnique(sources_, src_ptr->extsrc_ptrV, name,
                                         "The source named {} is not unique!");
}

bool IRhydr2d::hasDynamicInflow() const {
  return hasDynamicInflow_.get([this] {
    return std::any_of(bndr_ptrV.begin(), bndr_ptrV.end(), [](const IRbndr2d* boundary) {
      return boundary->type == "hydrograph" && boundary->dynamic_slope;
    });
  });
}

void IRhydr2d::checkRules() {
  if (bndr_ptrV.empty()) {
    warning(
        {"no-boundary", "the region has no BOUNDARY, so that all its edges are walls",
         "add a BOUNDARY for each string over which water flows in or out, unless there is none"},
        "No BOUNDARY block has been defined for HYDRAULICS. Undefined boundaries are automatically treated as 'wall'.");
  }
  for (const auto& [i, j] : equalPairs(bndr_ptrV, &IRbndr2d::string_name)) {
    const IRbndr2d& earlier = *bndr_ptrV[i];
    const IRbndr2d& later = *bndr_ptrV[j];
    report(
        Severity::error, *this,
        {about<&IRbndr2d::string_name>(later), about<&IRbndr2d::string_name>(earlier)},
        {"shared-string", "two BOUNDARY blocks stand on the string '{0}'",
         "give each BOUNDARY a string of its own"},
        "Two hydraulic boundaries share the same boundary_string_name '{}' Every BOUNDARY needs a unique boundary_string_name assigned.",
        later.string_name);
  }
  for (const auto& [i, j] : pairsSharingName(innerbndr_ptrV, &IRinnerboundary2d::string_name1,
                                             &IRinnerboundary2d::string_name2)) {
    // The name shown is that of the ordinary boundary at this place.
    reportSharedSide(
        *this, *innerbndr_ptrV[i], *innerbndr_ptrV[j],
        "Two inner boundaries share the same boundary_string_name '{}' Every INNER BOUNDARY needs a unique boundary_string_name assigned.",
        i < bndr_ptrV.size() ? bndr_ptrV[i]->string_name : std::string());
  }
}

}  // namespace KESTparse
