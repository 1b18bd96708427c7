#include "KESTparse/plane2d/IRbedloadDirection.h"

#include "KESTparse/framework/ListRules.h"

namespace KESTparse {

void IRbedloadDirection::getDescription(std::ostream& out) const {
  out << "The DIRECTION block for bedload in 2D contains general settings dealing with the adaptation of the bedload transport direction.";
}

void IRbedloadDirection::createTags() {
  text<&Self::lateral_transport_type>(
      "The following lateral bedload transport types can be selected (References are given in the Reference Manual RI)")
      .mandatory()
      .oneOf({"lateral_bed_slope", "curvature_effect_static", "curvature_effect_dynamic"});
  integers<&Self::lateral_index>(
      "This tag provides a list containing material indices, where the relevant lateral transport type is applied.")
      .mandatory();
  text<&Self::radius_calculation_type>(
      "This tag defines the caluculation type for the radius of the river bend/curvature. This tag has only an effect if 'curvature_effect_dynamic' is selected.")
      .mandatory()
      .oneOf({"water_surface_elevation", "velocity_vectors"})
      .requiredIf("lateral_transport_type", {"curvature_effect_dynamic"});
  reals<&Self::radius_static>(
      "This tag provides a list with the corresponding values of the radius of the river bend/curvature matching with material indices defined in the tag 'lateral_index'. The ...")
      .unit("[m]")
      .requiredIf("lateral_transport_type", {"curvature_effect_static"});
  real<&Self::lateral_transport_factor>(
      "This factor is used to determine the intensity of the lateral bed slope effect (Ikeda).")
      .defaultsTo("1.5")
      .unit("[-]")
      .above(0)
      .atMost(4)
      .usedIf("lateral_transport_type", {"lateral_bed_slope"});
  text<&Self::curvature_transport_factor_type>(
      "This tag defines weather the curvature transport factor is assumed to be a fix value or determined dynamically based on local roughness.")
      .defaultsTo("fix")
      .oneOf({"fix", "dynamic"})
      .usedIf("lateral_transport_type", {"curvature_effect_static", "curvature_effect_dynamic"});
  real<&Self::curvature_transport_factor>(
      "This tag defines an empirical factor used for calculation of curvature effect with fix prefactor.")
      .defaultsTo("7.0")
      .unit("[-]")
      .above(0)
      .atMost(20)
      .usedIf("curvature_transport_factor_type", {"fix"});
  real<&Self::dynamic_prefactor>(
      "This tag defines a calibration factor used for calculation of dynamic curvature transport factor based on local roughness.")
      .defaultsTo("1.0")
      .unit("[-]")
      .above(0)
      .atMost(2)
      .usedIf("curvature_transport_factor_type", {"dynamic"});
  real<&Self::initial_radius>("This tag defines an initial radius to start the simulation.")
      .defaultsTo("10000.0")
      .unit("[m]")
      .atLeast(-100000)
      .atMost(100000)
      .usedIf("lateral_transport_type", {"curvature_effect_dynamic"});
  real<&Self::min_abs_radius>(
      "This tag defines the minimal absolute radius that can occur or can be expected during simulation.")
      .defaultsTo("100.0")
      .unit("[m]")
      .above(0)
      .atMost(100000)
      .usedIf("lateral_transport_type", {"curvature_effect_dynamic"});
  text<&Self::min_abs_radius_use>("This tag defines how the tag 'min_abs_radius' is used")
      .defaultsTo("significance_value")
      .oneOf({"significance_value", "min_value"})
      .usedIf("lateral_transport_type", {"curvature_effect_dynamic"});
  real<&Self::update_timestep_radius>(
      "This tag defines the update time intervall for dynamic radius calculation during simulation.")
      .defaultsTo("60.0")
      .unit("[s]")
      .above(1)
      .usedIf("lateral_transport_type", {"curvature_effect_dynamic"});
  real<&Self::lateral_transport_exponent>(
      "This tag defines an empirical exponent used for calculation of lateral transport due to lateral bed slope.")
      .defaultsTo("0.5")
      .unit("[-]")
      .atLeast(0)
      .atMost(2)
      .usedIf("lateral_transport_type", {"lateral_bed_slope"});
  text<&Self::scale_lateral_transport>(
      "Setting this tag to 'no' means that bed load transport on laterally inclined bed slope not only changes transport direction, but also increases in magnitude (not recommended).")
      .defaultsTo("yes")
      .oneOf({"yes", "no"})
      .usedIf("lateral_transport_type", {"lateral_bed_slope"});
}

void IRbedloadDirection::checkRules() {
  if (lateral_transport_type != "curvature_effect_static") {
    return;
  }
  if (radius_static.empty()) {
    error<&Self::radius_static, &Self::lateral_transport_type>(
        {"no-radius", "'curvature_effect_static' lacks the radii of the bends",
         "list in 'radius_static' one radius in m for each material index of 'lateral_index'"},
        "'curvature_effect_static' has been specified in DIRECTION block but 'radius_static' is missing. Please specify 'radius_static'!");
  } else if (radius_static.size() != lateral_index.size()) {
    reportIndexCount<&Self::radius_static, &Self::lateral_index>(
        *this,
        "Number of entries in 'lateral_index' and 'radius_static' do not match in DIRECTION block.");
  }
}

}  // namespace KESTparse
