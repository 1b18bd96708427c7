#include "KESTparse/linking/IRcouplingLateral.h"

namespace KESTparse {

void IRcouplingLateral::getDescription(std::ostream& out) const {
  out << "A lateral coupling is a special coupling type, which can be used to couple a 1-D river channel model with a 2-D floodplain model.";
}

void IRcouplingLateral::createTags() {
  text<&Self::kestchain>(
      "1-D channel flow model. This 1-D model represents the 1-D flow within the river channel.")
      .mandatory();
  text<&Self::kestplane>(
      "2-D floodplain model. This 2-D model represents the floodplain which is coupled laterally with the river channel.")
      .mandatory();
  fileName<&Self::connections_filename>(
      "Name of file which defines the couplings between 1-D cross sections and 2-D edges as given by the user.The file must have 4 columns")
      .requiredIf("connections_automatic", {"no"});
  real<&Self::c_m>("Empircal de Marchi coefficient in weir formula with frontal flow (2D -> 1D).")
      .defaultsTo("0.66");
  text<&Self::momentum_sink>("Determines if the source also affects the momentum.")
      .defaultsTo("yes")
      .oneOf({"yes", "no"});
  real<&Self::momentum_factor>("Factor to control the momentum source term [-]. Default: 1.0.")
      .defaultsTo("1.0")
      .atLeast(0);
  boolean<&Self::suppressed_overfall>(
      "This flag indicates whether in the case of a supressed overfall a reduction factor should be taken into account for calculating the overfall discharge coefficient 'my'. ...")
      .defaultsTo("no")
      .preset("0");
  boolean<&Self::connections_automatic>(
      "This flag determines if the lateral coupling connections between 1-D cross sections and 2-D edges (at the boundary of the 2-D mesh) shall be find and created ...")
      .defaultsTo("no")
      .preset("0");
  integers<&Self::connections_index>(
      "Parameter for automatic creation of coupling connections at lateral coupling, used only if the flag 'lateral_connection_automatic' is set to 'yes'.It describes a list of ...")
      .requiredIf("connections_automatic", {"yes"});
  real<&Self::connections_distance>(
      "Parameter for automatic creation of coupling connections at lateral coupling, used only if the flag 'lateral_coupling_automatic' is set to 'yes'.A connection is created ...")
      .defaultsTo("10.0")
      .unit("[m]")
      .requiredIf("connections_automatic", {"yes"});
  boolean<&Self::weir_from_dyke1D>(
      "This flag indicates whether the weir height for lateral exchange is determined from interpolated values of the 1-D dyke heights or from the elevations of the 2-D edges.")
      .mandatory()
      .preset("0");
  boolean<&Self::weir_determination_nodes>(
      "This flag is only used if 'weir_from_dyke1D' is set to 'no', i.e.")
      .defaultsTo("no")
      .preset("0")
      .usedIf("weir_from_dyke1D", {"no"});
  real<&Self::damping_factor>(
      "This flag determines the damping factor which is applied for the lateral coupling.")
      .defaultsTo("0.5")
      .unit("[-]")
      .atLeast(0)
      .below(1);
  real<&Self::factor_adjust>(
      "General adjustment factor to reduce or increase all exchanged discharges in lateral coupling.")
      .defaultsTo("1.0");
  boolean<&Self::print_series>("print time series of exchanged values of the coupled boundaries")
      .defaultsTo("no")
      .preset("0");
}

}  // namespace KESTparse
