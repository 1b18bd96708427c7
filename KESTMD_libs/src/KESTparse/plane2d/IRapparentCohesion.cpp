#include "KESTparse/plane2d/IRapparentCohesion.h"

namespace KESTparse {

void IRapparentCohesion::getDescription(std::ostream& out) const {
  out << "The APPARENT_COHESION block for morphology in 2D deals with approximating effects of apparent cohesion.";
}

void IRapparentCohesion::createTags() {
  real<&Self::saturation_threshold_deposition>(
      "Specifies the saturation threshold from which the deposition angle is linearly reduced.")
      .defaultsTo("0.0")
      .unit("[-]")
      .atLeast(0)
      .below(1);
  real<&Self::angle_deposition_delta>(
      "Specifies the maximum amount (in degree) of which the deposition angle can be reduced.")
      .defaultsTo("2.0")
      .unit("[Degree]")
      .atLeast(0);
  real<&Self::local_slope_angle_repose_cohesion>(
      "This is the angle used in the lateral local slope correction formulation for the angle of repose.")
      .defaultsTo("30.0")
      .unit("[Degree]");
  real<&Self::height_above_bed>(
      "This a special calibration parameter used for the determination of the additional resistance of particles to the erosion due to apparent cohesion effects.")
      .defaultsTo("2.0")
      .unit("[-]")
      .above(0);
  real<&Self::factor_tau_suc>(
      "This is the main calibration parameter used for the determination of the additional resistance of particles to the erosion due to apparent cohesion effects.")
      .defaultsTo("0.1")
      .unit("[-]");
  real<&Self::factor_tau_suc2>(
      "This is the main calibration parameter used for the determination of the additional resistance of particles to the erosion due to apparent cohesion effects.")
      .defaultsTo("0.1")
      .unit("[-]");
  real<&Self::deposition_threshold>(
      "For deposited material no apparent cohesion effects are considered.")
      .defaultsTo("1E-5")
      .unit("[m]")
      .above(0);
  text<&Self::inverse_apparent>(
      "If this parameter is set to 'off', the critical shear stress is increased due to apparent cohesion.")
      .defaultsTo("off")
      .oneOf({"off", "on"});
}

}  // namespace KESTparse
