#include "KESTparse/chain1d/IRhydr1d.h"

#include <algorithm>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/chain1d/IRbndr1d.h"
#include "KESTparse/chain1d/IRextsrc1d.h"
#include "KESTparse/chain1d/IRfriction1d.h"
#include "KESTparse/chain1d/IRic1d.h"
#include "KESTparse/chain1d/IRinnerboundary1d.h"
#include "KESTparse/chain1d/IRparam1d.h"
#include "KESTparse/chain1d/IRsrc1d.h"
#include "KESTparse/framework/Rules.h"

namespace KESTparse {
void IRhydr1d::getDescription(std::ostream& out) const {
  out << "Defines the hydraulic specifications for the simulation. This block contains only further sub blocks but no own variables.";
}

void IRhydr1d::createSubBlocks() {
  subBlock<&Self::param_ptr>("PARAMETER").mandatory();
  subBlock<&Self::friction_ptr>("FRICTION").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").mandatory().repeatable();
  subBlock<&Self::ic_ptr>("INITIAL").mandatory();
  subBlock<&Self::src_ptr>("SOURCE");
  subBlock<&Self::innerbndr_ptrV>("INNER_BOUNDARY").repeatable();
}

void IRhydr1d::createTags() {}

const IRbndr1d* IRhydr1d::findBoundary(const std::string& name) const {
  return findUnique(boundaries_, bndr_ptrV, name, "The boundary named {} is not unique!");
}

const IRinnerboundary1d* IRhydr1d::findInnerBoundary(const std::string& name) const {
  // Without a tag for the name they all bear the empty one, by which none is meant.
  return name.empty() ? nullptr
                      : findUnique(innerBoundaries_, innerbndr_ptrV, name,
                                   "The inner boundary named {} is not unique!");
}

const IRextsrc1d* IRhydr1d::findExternalSource(const std::string& name) const {
  return src_ptr == nullptr ? nullptr
                            : findUnique(sources_, src_ptr->extsrc_ptrV, name,
                                         "The source named {} is not unique!");
}

void IRhydr1d::checkRules() {
  const auto hasBoundaryAt = [this](std::string_view end) {
    return std::any_of(bndr_ptrV.begin(), bndr_ptrV.end(), [end](const IRbndr1d* boundary) {
      return toUpper(boundary->string) == end;
    });
  };
  if (!hasBoundaryAt("UPSTREAM")) {
    error({"no-upstream-boundary", "no BOUNDARY is at the upstream end of the channel",
           "add a BOUNDARY with 'string = upstream'"},
          "The 'upstream' boundary condition is missing");
  }
  if (!hasBoundaryAt("DOWNSTREAM")) {
    error({"no-downstream-boundary", "no BOUNDARY is at the downstream end of the channel",
           "add a BOUNDARY with 'string = downstream'"},
          "The 'downstream' boundary condition is missing");
  }
}

}  // namespace KESTparse
