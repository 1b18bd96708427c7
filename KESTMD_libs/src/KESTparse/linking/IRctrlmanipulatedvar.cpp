#include "KESTparse/linking/IRctrlmanipulatedvar.h"

#include "KESTparse/chain1d/IRbndr1d.h"
#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/chain1d/IRextsrc1d.h"
#include "KESTparse/chain1d/IRhydr1d.h"
#include "KESTparse/chain1d/IRinnerboundary1d.h"
#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRbndr2d.h"
#include "KESTparse/plane2d/IRextsrc2d.h"
#include "KESTparse/plane2d/IRhydr2d.h"
#include "KESTparse/plane2d/IRinnerboundary2d.h"
#include "KESTparse/plane2d/IRkestplane.h"
#include "KESTparse/root/IRdomain.h"

namespace KESTparse {

void IRctrlmanipulatedvar::getDescription(std::ostream& out) const {
  out << "This block defines a manipulated variable for a HID- or PID-controller.";
}

void IRctrlmanipulatedvar::createTags() {
  word<&Self::name>(
      "Unique name of the manipulated variable. This is used by monitored variables to relate their coefficients for a PID controller.")
      .mandatory();
  positionOf<&Self::position_identifier, &Self::position_region>(
      "position", "Identifier for the boundary condition, which will be manipulated.")
      .mandatory();
  real<&Self::start_value>(
      "The initial value of the manipulated variable at start-time of the simulation.")
      .mandatory();
  real<&Self::max_change_rate>(
      "The maximum change rate of the manipulated value in units per second, This is an important parameter for PID controllers.")
      .above(0);
  reals<&Self::range>(
      "The possible value range for the manipulated variable, e.g. lowest and maximal possible level of a weir crest.")
      .unit("[m rel.]")
      .items(2);
  reals<&Self::time_range>(
      "The manipulated variable will only be controlled within this range of time.")
      .unit("[s]")
      .items(2);
  real<&Self::steady_value>(
      "The value of the manipulated variable for when the time is outside of the specified time range.");
  identifiedBy({"name"});
}

void IRctrlmanipulatedvar::checkRules() {
  has_max_change_rate = hasTag("max_change_rate");
  has_range = hasTag("range");
  if (has_range && range[0] > range[1]) {
    error<&Self::range>({"range-order", "the range begins at {0}, above its end at {1}",
                         "give the smaller value first, such as 'range = ({1} {0})'"},
                        "Invalid range as min > max", range[0], range[1]);
  }
  has_time_range = hasTag("time_range");
  if (has_time_range && time_range[0] > time_range[1]) {
    error<&Self::time_range>(
        {"time-range-order", "the time range begins at {0} s, after its end at {1} s",
         "give the earlier time first, such as 'time_range = ({1} {0})'"},
        "Time range is invalid as min > max", time_range[0], time_range[1]);
  }
  const auto& domain = enclosing<IRdomain>();
  const IRcalc1d* const chain = domain.findChain(position_region);
  const IRkestplane* const plane = domain.findPlane(position_region);
  if (chain != nullptr && plane != nullptr) {
    report(Severity::error, *this,
           {about<&Self::position_identifier>(*this), about<&IRcalc1d::region_name>(*chain),
            about<&IRkestplane::region_name>(*plane)},
           {"ambiguous-region", "a 1D and a 2D region are both named '{0}'",
            "give one of the two another 'region_name'"},
           "There is a 1D and a 2D region named {}. So I don't know which one to use.",
           position_region);
  } else if (chain == nullptr && plane == nullptr) {
    error<&Self::position_identifier>(
        {"unknown-region", "there is no 1D or 2D region named '{0}'",
         "give the 'region_name' and the place, such as 'position = my_region.my_weir'{1}"},
        "Region '{}' is not a valid region name. Please use the <regionname>.<identifier> syntax to define it properly",
        position_region, domain.perhapsRegion(position_region));
  } else if (chain != nullptr) {
    checkPlace(*chain);
  } else {
    checkPlace(*plane);
  }
}

void IRctrlmanipulatedvar::checkPlace(const IRcalc1d& chain) {
  if (chain.hydr_ptr == nullptr) {
    return;
  }
  const IRhydr1d& hydraulics = *chain.hydr_ptr;
  // A name that is not unique leaves as a thrown text, that of the first lookup that meets one.
  const bool isBoundary = hydraulics.findBoundary(position_identifier) != nullptr;
  const bool isInnerBoundary = hydraulics.findInnerBoundary(position_identifier) != nullptr;
  const bool isSource = hydraulics.findExternalSource(position_identifier) != nullptr;
  const int found = int{isBoundary} + int{isInnerBoundary} + int{isSource};
  if (found == 0) {
    error<&Self::position_identifier>(
        {"unknown-place", "region '{1}' has no BOUNDARY or EXTERNAL_SOURCE named '{0}'",
         "give the 'name' of one of them{2}"},
        "Boundary, inner boundary or source '{}' does not exist in region {}.", position_identifier,
        position_region, perhaps(position_identifier, hydraulics.bndr_ptrV, &IRbndr1d::name));
  } else if (found > 1) {
    error<&Self::position_identifier>(
        {"ambiguous-place",
         "a BOUNDARY and an EXTERNAL_SOURCE of region '{1}' are both named '{0}'",
         "give one of the two another 'name'"},
        "There is a boundary and/or innerboundary and/or an external source named '{}' in region {}.",
        position_identifier, position_region);
  }
}

void IRctrlmanipulatedvar::checkPlace(const IRkestplane& plane) {
  if (plane.hydr_ptr == nullptr) {
    return;
  }
  const IRhydr2d& hydraulics = *plane.hydr_ptr;
  bool allThrew = true;
  const auto find = [&allThrew](const auto& lookup) -> const InputBlock* {
    try {
      const InputBlock* const found = lookup();
      allThrew = false;
      return found;
    } catch (const std::string& /*text*/) {
      return nullptr;
    }
  };
  const InputBlock* const bnd = find([&] { return hydraulics.findBoundary(position_identifier); });
  const InputBlock* const innrbnd =
      find([&] { return hydraulics.findInnerBoundary(position_identifier); });
  const InputBlock* const src =
      find([&] { return hydraulics.findExternalSource(position_identifier); });
  if (allThrew) {
    error<&Self::position_identifier>(
        {"second-name", "several EXTERNAL_SOURCE blocks of region '{1}' are named '{0}'",
         "give each EXTERNAL_SOURCE a 'name' of its own"},
        "There is no boundary and no external source named {}.", position_identifier,
        position_region);
    return;
  }
  // A source that does not exist throws nothing, so a place that names nothing ends here.
  ASSERT(bnd != nullptr || innrbnd != nullptr || src != nullptr,
         "neither inner or normal boundary or external source exist, but no exception thrown?");
}

}  // namespace KESTparse
