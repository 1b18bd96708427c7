#include "KESTparse/plane2d/IRGravitationalTransport.h"

#include "KESTparse/framework/ListRules.h"

namespace KESTparse {

void IRGravitationalTransport::getDescription(std::ostream& out) const {
  out << "The GRAVITATIONAL_TRANSPORT block for morphology in 2D deals with transport due to slope failures.Use this block to enable slope failures in cases of steep elements within the domain.This approach bases on failure-angley which determine when a slope failure ...";
}

void IRGravitationalTransport::createTags() {
  integers<&Self::index>(
      "List of material indizes for elements. At least one indizes must be specified.The gravitational transport is limited to elements which have one of the given indizes.For ...")
      .mandatory();
  reals<&Self::angle_failure_dry>(
      "If this critical angle is exceeded for any element, a slope failure occurs.")
      .mandatory()
      .constraint("[Degree]");
  reals<&Self::angle_failure_wetted>(
      "If this critical angle (which should be similar to the angle of repose) is exceeded for wetted or completely dry elements, a slope failure occurs . Note that this angle ...")
      .mandatory()
      .constraint("[Degree]");
  reals<&Self::angle_failure_deposited>(
      "If this critical angle is exceeded for deposited material a slope failure occurs.")
      .mandatory()
      .constraint("[Degree]");
  text<&Self::gravity_transport_on_cells>(
      "The gravitational transport can be applied to all elements or limited to elements which are fully or partially wetted.")
      .defaultsTo("all")
      .oneOf({"all", "fully wetted", "partially wetted"});
  real<&Self::max_delta_z>(
      "Threshold of deposition height [m]. If the deposition is larger than this threshold, the failure-angle for deposited material is applied.Usually this value should not ...")
      .defaultsTo("0.001")
      .unit("[m]")
      .above(0);
  integer<&Self::cycle_step>(
      "Specifies the cycle steps for which gravitational transport shall be calculated.")
      .defaultsTo("5")
      .preset("0")
      .atLeast(0);
  real<&Self::min_changed_volume>("Abort criteria for gravitational transport calculation.")
      .defaultsTo("0.01")
      .unit("[m3]")
      .atLeast(0);
  integer<&Self::max_iterations>("Abort criteria for gravitational transport calculation.")
      .defaultsTo("10")
      .atLeast(0);
  text<&Self::angle_wetted_criterion>(
      "This parameter determines under which conditions the critical angle for wetted cells is applied.If it is set to 'full_wetted' than this angle is applied only to fully ...")
      .defaultsTo("fully_wetted")
      .oneOf({"fully_wetted", "partially_wetted"});
  text<&Self::only_subsurface_angle>("").defaultsTo("no").oneOf({"yes", "no"});
  text<&Self::check_hydrostatic_stabilization>("").defaultsTo("no").oneOf({"yes", "no"});
  real<&Self::stabilization_height>("").defaultsTo("0.00").unit("[m]").atLeast(0);
}

void IRGravitationalTransport::checkRules() {
  if (index.empty()) {
    return;
  }
  if (angle_failure_deposited.size() != index.size()) {
    reportIndexCount<&Self::angle_failure_deposited, &Self::index>(
        *this,
        "Number of entries in 'index' and 'angle_failure_deposited' do not match in GRAVITATIONAL_TRANSPORT block for MORPHOLOGY.");
  }
  if (angle_failure_dry.size() != index.size()) {
    reportIndexCount<&Self::angle_failure_dry, &Self::index>(
        *this,
        "Number of entries in 'index' and 'angle_failure_dry' do not match in GRAVITATIONAL_TRANSPORT block for MORPHOLOGY.");
  }
  // The third list may have any length: this asks whether both are empty, which they never are.
  if (angle_failure_wetted.empty() && index.empty()) {
    reportIndexCount<&Self::angle_failure_wetted, &Self::index>(
        *this,
        "Number of entries in 'index' and 'angle_failure_wetted' do not match in GRAVITATIONAL_TRANSPORT block for MORPHOLOGY.");
  }
}

}  // namespace KESTparse
