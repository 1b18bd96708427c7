#include "KESTparse/chain1d/IRextsrc1d.h"

namespace KESTparse {

void IRextsrc1d::getDescription(std::ostream& out) const {
  out << "Specifies sources and sinks static or in time for parts or the whole area.";
}

void IRextsrc1d::createTags() {
  word<&Self::name>("Unique identifier which is used to define controllers or couplings.")
      .mandatory()
      .preset("unspecified_name");
  text<&Self::type>(
      "off_channel: This is kind of a boundary condition which allows overflow over the lateral edges of the cross sections.")
      .mandatory()
      .preset("unspecified_type_of_external_source")
      .oneOf({"off_channel", "coupling_off_channel", "qlateral", "coupling_qlateral", "sideweir",
              "coupling_sideweir", "bottom_opening"});
  seriesFile<&Self::file, &Self::file_table>(
      "Name of the file containing the source flow in [m3/s]. The flow can be set negativ in order to simulate a sink.")
      .preset("unspecified_file.txt")
      .usedIf("type", {"qlateral"});
  text<&Self::cross_section>(
      "Define a cross section where lateral inflow (or outflow) takes place.")
      .preset("unspecified_cross_section")
      .usedIf("type",
              {"qlateral", "coupling_qlateral", "sideweir", "coupling_sideweir", "bottom_opening"});
  words<&Self::cross_sections>(
      "Define two cross section. In between these cross sections a lateral outflow over the channel dyke can take place.")
      .items(2)
      .usedIf("type", {"off_channel", "coupling_off_channel"});
  text<&Self::side>("Defines if the source acts on the left or right side of the cross section.")
      .oneOf({"left", "right"});
  real<&Self::weir_crest_height>("Absolute sideweir crest elevation [m].")
      .preset("-1.0")
      .usedIf("type", {"sideweir", "coupling_sideweir"});
  real<&Self::weir_crest_length>("Length of the sideweir [m].")
      .preset("-1.0")
      .above(0)
      .usedIf("type", {"sideweir", "coupling_sideweir"});
  real<&Self::poleni>("Poleni factor for the sideweir outlfow [-].")
      .preset("-1.0")
      .atLeast(0)
      .atMost(1)
      .usedIf("type", {"sideweir", "coupling_sideweir"});
  text<&Self::momentum_sink>("Determines if the source also affects the momentum.")
      .defaultsTo("yes")
      .preset("unspecified_momentum_sink")
      .oneOf({"yes", "no"})
      .usedIf("type", {"sideweir", "coupling_sideweir", "bottom_opening"});
  real<&Self::momentum_factor>("Factor to control the momentum source term [-]. Default: 1.0.")
      .defaultsTo("1.0")
      .atLeast(0)
      .usedIf("type", {"sideweir", "coupling_sideweir", "bottom_opening"});
  real<&Self::opening_width>("Width of the bottom opening [m].")
      .defaultsTo("-1.0")
      .atLeast(0)
      .usedIf("type", {"bottom_opening"});
  real<&Self::contraction_coeff>(
      "Contraction coefficient of the bottom opening (geometry dependent) [-].")
      .defaultsTo("-1.0")
      .atLeast(0)
      .atMost(1)
      .usedIf("type", {"bottom_opening"});
  real<&Self::correction_coeff>("Correction coefficient of the bottom opening [-]. Default: 1.0")
      .defaultsTo("1.0")
      .atLeast(0)
      .usedIf("type", {"bottom_opening"});
  identifiedBy({"name"});
}

}  // namespace KESTparse
