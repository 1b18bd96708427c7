#include "KESTparse/chain1d/IRmorphparam1d.h"

#include "KESTparse/base/Conversions.h"

namespace KESTparse {

void IRmorphparam1d::getDescription(std::ostream& out) const {
  out << "The PARAMETER block for morphology in 1D contains general settings dealing with sediment transport. It contains parameters concerning both bed load and suspended load.";
}

void IRmorphparam1d::createTags() {
  real<&Self::porosity>("This is the general bed material porosity in percent.")
      .mandatory()
      .preset("37")
      .unit("[%]")
      .atLeast(0)
      .atMost(100);
  real<&Self::wetting_fraction>(
      "If this fraction of the level difference of a soil is below the waterlevel, the soil is considered to be wetted.")
      .defaultsTo("0.1")
      .atLeast(0)
      .atMost(1);
  real<&Self::density>("This is the general density of the sediment.")
      .mandatory()
      .preset("2650")
      .unit("[kg/m3]")
      .above(0);
  text<&Self::control_volume_type>(
      "This tag defines how to determine the bed load control volume thickness hm, which is also called active layer or mixing layer thickness.")
      .defaultsTo("constant")
      .preset("undefined")
      .oneOf({"constant", "d90"});
  real<&Self::control_volume_thickness>(
      "The thickness of the bed load control volume can be defined.")
      .defaultsTo("0.1")
      .preset("-1.0")
      .unit("[m]")
      .above(0)
      .usedIf("control_volume_type", {"constant"});
  real<&Self::control_volume_factor>(
      "This parameter is needed for control_volume_type 'd90'. Therefore, the bedload control volume thickness hm is determined as")
      .defaultsTo("2.0")
      .unit("[-]")
      .above(0)
      .usedIf("control_volume_type", {"d90"});
  real<&Self::max_dz_table>(
      "Maximum modification of bedlevel allowed before the tables (see also SECTION COMPUTATION in HYDRAULICS) are recomputed.")
      .defaultsTo("0.1")
      .unit("[m]")
      .above(0);
  text<&Self::create_new_layers>(
      "If this flag is active new sediment layers will be created when sediment is deposed, otherwise the thickness of the existing layer will be increased.")
      .defaultsTo("off")
      .oneOf({"off", "on"});
  real<&Self::max_layer_thickness>("This is the maximum thickness of newly created soil layers.")
      .defaultsTo("0.5")
      .unit("[m]")
      .above(0)
      .usedIf("create_new_layers", {"on"});
  real<&Self::min_theta_critic>("This is the minimally allowed critical theta (shields factor).")
      .defaultsTo("0.02");
}

void IRmorphparam1d::checkRulesAlways() {
  if (create_new_layers == "on" && !(max_layer_thickness > control_volume_thickness)) {
    error<&Self::max_layer_thickness, &Self::control_volume_thickness, &Self::create_new_layers>(
        {"thin-layers",
         "new layers of at most {0} m are not thicker than the bed load control volume of {1} m",
         "give a 'max_layer_thickness' above {1} m, or set 'create_new_layers = off'"},
        "The 'max_layer_thickness' is smaller than the thickness of the bed-load control volume 'control_volume_thickness'. This is not permitted. Please correct the input.",
        doubleToString(max_layer_thickness), doubleToString(control_volume_thickness));
  }
  constexpr double leastDensity = 10;  // [kg/m3]
  constexpr double mostDensity = 5000;
  if (density > mostDensity || density < leastDensity) {
    warning<&Self::density>(
        {"unusual-density", "a sediment density of {0} kg/m3 is unusual",
         "give 'density' in kg/m3: quartz has 2650"},
        "Your defined density = {} seems to be out of range of common values. Are you really sure the input is correct?",
        doubleToString(density));
  }
  constexpr double leastPorosity = 5;  // [%]
  constexpr double mostPorosity = 85;
  if (porosity > mostPorosity || porosity < leastPorosity) {
    warning<&Self::porosity>(
        {"unusual-porosity", "a porosity of {0} % is unusual",
         "give 'porosity' in per cent: sand and gravel have 25 to 45"},
        "Your defined porosity = {} seems to be out of range of common values. Are you really sure the input is correct?",
        doubleToString(porosity));
  }
}

}  // namespace KESTparse
