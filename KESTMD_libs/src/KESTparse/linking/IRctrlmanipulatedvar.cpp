#include "KESTparse/linking/IRctrlmanipulatedvar.h"

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

}  // namespace KESTparse
