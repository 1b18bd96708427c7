#include "KESTparse/plane2d/IRmorphparam2d.h"

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/ListRules.h"

namespace KESTparse {

void IRmorphparam2d::getDescription(std::ostream& out) const {
  out << "The PARAMETER block for hydraulics is used to specify general settings dealing with sediment properties.";
}

void IRmorphparam2d::createTags() {
  real<&Self::porosity>("This is the general bed material porosity in percent.")
      .defaultsTo("37")
      .preset("37.0")
      .unit("[%]")
      .atLeast(0)
      .atMost(100);
  real<&Self::density>("This is the general density of the sediment.")
      .defaultsTo("2650")
      .preset("2650.0")
      .unit("[kg/m3]")
      .above(0);
  text<&Self::control_volume_type>(
      "This tag defines how to determine the bed load control volume thickness hm, which is also called active layer or mixing layer thickness.")
      .defaultsTo("constant")
      .preset("undefined")
      .oneOf({"constant", "borah", "d90"});
  reals<&Self::control_volume_thickness>(
      "This tag defines the thickness of the bed load control volume, also referred to as active layer, cooresponding to the material index defined in tag ...")
      .unit("[m]")
      .usedIf("control_volume_type", {"constant"});
  integers<&Self::control_volume_thickness_index>(
      "This tag defines a list with material indices (integer numbers) corresponding to tag 'control_volume_thickness'. These two lists must have the same lenght.");
  real<&Self::control_volume_factor>(
      "This parameter is needed for control_volume_type 'd90'. Therefore, the bedload control volume thickness hm is determined as")
      .defaultsTo("2.0")
      .unit("[-]")
      .above(0)
      .usedIf("control_volume_type", {"d90"});
  text<&Self::control_volume_initial>(
      "This tag defines the initial grain size distribution (GSD) in the bed load control volume.")
      .defaultsTo("soildef")
      .oneOf({"soildef", "gessler"});
  text<&Self::create_new_layers>(
      "If this parameter is set to 'on', new soil layers can be generated during bed aggradation. If it is set to 'off', then no soil layers are generated dynamically.")
      .defaultsTo("off")
      .oneOf({"off", "on"});
  real<&Self::max_layer_thickness>(
      "This is the maximum thickness of the sublayer below the control volume. When 'max_layer_thickness' is exceeded due to deposition, new soil layers are created.")
      .defaultsTo("0.5")
      .unit("[m]")
      .above(0)
      .usedIf("create_new_layers", {"on"});
  real<&Self::new_layer_factor>("This factor is used for creating new layers.")
      .defaultsTo("0.2")
      .unit("[m]")
      .above(0)
      .atMost(0.5)
      .usedIf("create_new_layers", {"on"});
  real<&Self::min_theta_critic>(
      "This is the minimally allowed critical theta (shields factor).The minimum critical shields factor is needed out of numerical reasons to prevent division by zero if a ...")
      .defaultsTo("0.02");
  real<&Self::local_slope_angle_repose>(
      "This is the angle used in the horizontal local slope correction formulation for the angle of repose.")
      .defaultsTo("30.0")
      .unit("[Degree]");
  text<&Self::strong_coupling>(
      "If this parameter is set to 'on', than the hydraulics and sediment transport are calculated iteratively.The same time step is calculated repeatedly with different ...")
      .defaultsTo("off")
      .oneOf({"off", "on"});
  integer<&Self::strong_coupling_iter>(
      "This parameter specifies the number of internal iterations if 'strong coupling' is applied. At the moment only a fixed number of iterations can be specified.")
      .defaultsTo("3")
      .unit("[-]")
      .above(0)
      .usedIf("strong_coupling", {"on"});
  real<&Self::distortion_offset>("This is the offset in [m] for a random grid perturbation")
      .defaultsTo("0")
      .preset("0.0")
      .unit("[m]");
  real<&Self::distortion_time_interval>(
      "This is the time interval in [s] for a random grid distortion with offset. A negative number as input will disable the distortion.")
      .defaultsTo("-1")
      .preset("-1.0")
      .unit("[s]");
  integers<&Self::distortion_index>(
      "This tag expects a list with all the material indices (integer numbers) where distortion is applied.");
}

void IRmorphparam2d::checkRules() {
  if (create_new_layers == "on") {
    for (std::size_t i = 0; i < control_volume_thickness.size(); ++i) {
      const double thickness = control_volume_thickness[i];
      if (thickness >= max_layer_thickness) {
        report(
            Severity::error, *this,
            {about<&Self::control_volume_thickness>(*this, i + 1),
             about<&Self::max_layer_thickness>(*this)},
            {"thick-control-volume",
             "the control volume of {0} m is not thinner than 'max_layer_thickness', which is {1} m",
             "give 'max_layer_thickness' more than {0} m, or make the control volume thinner"},
            "The 'max_layer_thickness' is smaller than the thickness of the bed-load control volume 'control_volume_thickness'. This is not permitted. Please correct the input.",
            thickness, max_layer_thickness);
      }
    }
  }
  if (control_volume_thickness.size() != control_volume_thickness_index.size()) {
    reportIndexCount<&Self::control_volume_thickness, &Self::control_volume_thickness_index>(
        *this,
        "The list 'control_volume_thickness' has not the same size as the list 'control_volume_thickness_index'. Please correct the input.");
  }
  if (density > 5000 || density < 10) {
    warning<&Self::density>(
        {"unusual-density", "a sediment density of {0} kg/m3 is unusual",
         "give the density in kg/m3; that of quartz is 2650"},
        "Your defined density = {} [kg/m3] seems to be out of range of common values. Are you really sure the input is correct?",
        doubleToString(density));
  }
  if (porosity > 85 || porosity < 5) {
    warning<&Self::porosity>(
        {"unusual-porosity", "a bed with a porosity of {0} % is unusual",
         "give the share of pores in percent, such as 'porosity = 37'"},
        "Your defined porosity = {} [%] seems to be out of range of common values. Are you really sure the input is correct?",
        doubleToString(porosity));
  }
}

}  // namespace KESTparse
