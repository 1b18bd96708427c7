#include "KESTparse/chain1d/IRsect_comp1d.h"

#include "KESTparse/base/Conversions.h"

namespace KESTparse {

void IRsect_comp1d::getDescription(std::ostream& out) const {
  out << "Specifies the mode of section computation and the necessary parameters.";
}

void IRsect_comp1d::createTags() {
  text<&Self::type>("Determination type for hydraulic state variables in the cross section.")
      .mandatory()
      .oneOf({"iteration", "table"});
  text<&Self::internal_levees>(
      "If this value is set to 'on', the forlands are considered to be wetted only if the waterlevel is higher than both limits of the main channel.")
      .defaultsTo("off")
      .oneOf({"on", "off"});
  real<&Self::precision>(
      "The maximum difference between given and calculated wetted area in iterative determination of water surface elevation.")
      .mandatory()
      .unit("[m2]")
      .above(0)
      .requiredIf("type", {"iteration"});
  real<&Self::min_interval>(
      "Minimum interval between water surface elevations for table calculation.")
      .mandatory()
      .unit("[m]")
      .above(0)
      .requiredIf("type", {"table"});
  real<&Self::max_interval>(
      "Maximum interval between water surface elevations for table calculation.")
      .mandatory()
      .unit("[m]")
      .above(0)
      .requiredIf("type", {"table"});
}

void IRsect_comp1d::checkRules() {
  if (hasTag("max_interval") && hasTag("min_interval") && !(max_interval > min_interval)) {
    error<&Self::max_interval, &Self::min_interval>(
        {"interval-order",
         "the largest interval of {0} m is not greater than the smallest one of {1} m",
         "give a 'max_interval' above {1} m, or a smaller 'min_interval'"},
        "The condition 'max_interval' ( = {}) > 'min_interval' ( = {}) fails!",
        doubleToString(max_interval), doubleToString(min_interval));
  }
}

}  // namespace KESTparse
