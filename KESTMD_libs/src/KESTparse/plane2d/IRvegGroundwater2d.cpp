#include "KESTparse/plane2d/IRvegGroundwater2d.h"

namespace KESTparse {

void IRvegGroundwater2d::getDescription(std::ostream& out) const {
  out << "The GROUNDWATER block for vegetation defines general settings related to the groundwater interpolation.";
}

void IRvegGroundwater2d::createTags() {
  real<&Self::offset>("Offset, given in [m], of the mean groundwater level (Zw).")
      .defaultsTo("0")
      .unit("[m]");
  real<&Self::maximum_distance>(
      "Parameter of IDW interpolator: defines the length of the radius in which the algorithm will search for wet elements needed for the interpolation.")
      .defaultsTo("100")
      .unit("[m]");
  real<&Self::maximum_distance_increase>(
      "Parameter of IDW interpolator: if the algorithm will not find any wet elements in the defined radius, it increases such distance by maximum_distance_increase until it ...")
      .defaultsTo("10")
      .unit("[m]");
  real<&Self::power_distance>(
      "Parameter of IDW interpolator: power of the inverse distance used in the method.")
      .defaultsTo("1");
  integer<&Self::minimum_points_within>(
      "Parameter of IDW interpolator: minimum number of elements needed for the interpolation within the defined maximum_distance.")
      .defaultsTo("3");
  reals<&Self::time_Zw>(
      "This requires a list of times [s] at which the algorithm computes the mean groundwater level (Zw).")
      .mandatory();
}

}  // namespace KESTparse
