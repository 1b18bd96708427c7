#include "KESTparse/plane2d/IRbndr2d.h"

namespace KESTparse {

void IRbndr2d::getDescription(std::ostream& out) const {
  out << "Defines boundary conditions for hydraulics.";
}

void IRbndr2d::createTags() {
  word<&Self::name>(
      "Every boundary condition may be given a name which can be used further for coupling or controller.")
      .preset("unspecified_name");
  word<&Self::string_name>(
      "This is the name of a cross section string defined in the STRINGDEF blocks for which this boundary condition holds.")
      .mandatory()
      .preset("UnnamedBoundary")
      .requiredIf("type",
                  {"hydrograph", "coupling_hydrograph", "weir", "coupling_weir", "gate",
                   "coupling_gate", "wall", "zero_gradient", "coupling_zero_gradient", "hqrelation",
                   "coupling_hqrelation", "zhydrograph", "coupling_zhydrograph"});
  text<&Self::type>(
      "wall: This is the default boundary condition for all nodes where no other boundary was specified.")
      .mandatory()
      .preset("UndefinedBoundaryType")
      .oneOf({"hydrograph", "coupling_hydrograph", "weir", "coupling_weir", "gate", "coupling_gate",
              "wall", "zero_gradient", "coupling_zero_gradient", "hqrelation",
              "coupling_hqrelation", "zhydrograph", "coupling_zhydrograph",
              "pore_pressures_coupling"});
  seriesFile<&Self::file, &Self::file_table>(
      "Filename of the file containing: time [s] in left column and value (discharge [m3/s], gate level [m.a.s.l], weir level [m.a.s.l], ...) in right column in the case of ...")
      .preset("UnspecifiedBoundaryFile")
      .usedIf("type", {"hydrograph", "weir", "coupling_weir", "gate", "coupling_gate",
                       "zhydrograph", "coupling_zhydrograph", "hqrelation", "coupling_hqrelation"});
  real<&Self::my>("My is the Poleni factor used for weir and gate boundary conditions.")
      .preset("-1.0")
      .unit("[-]")
      .above(0)
      .atMost(1);
  slopePerMill<&Self::slope>("This is the average slope at the boundary cross section.")
      .preset("-100.0")
      .unit("per mill")
      .atLeast(0)
      .usedIf("type", {"hydrograph", "coupling_hydrograph", "hqrelation", "coupling_hqrelation"});
  real<&Self::max_interval>(
      "This parameter is used for the calculation of the h-Q tables in case of a hydrograph boundary condition.")
      .defaultsTo("20")
      .preset("-1")
      .unit("[m]")
      .atLeast(0)
      .usedIf("type", {"hydrograph", "coupling_hydrograph"});
  integer<&Self::number_of_iterations>(
      "This parameter is used for the calculation of the h-Q tables in case of a hydrograph boundary condition.")
      .defaultsTo("5000")
      .preset("-1")
      .above(0)
      .usedIf("type", {"hydrograph", "coupling_hydrograph"});
  text<&Self::weighting_type>(
      "A hydrograph inflow boundary as well as the h-Q outflow boundary need to split up the total discharge to the distinct edges using a weighting method.")
      .defaultsTo("conveyance")
      .oneOf({"conveyance", "area"})
      .usedIf("type", {"hydrograph", "coupling_hydrograph", "hqrelation", "coupling_hqrelation"});
  boolean<&Self::wall_flux>(
      "This option handles the behaviour of partially wetted elements near a h-Q boundary condition.")
      .defaultsTo("no")
      .preset("false")
      .usedIf("type", {"hqrelation", "coupling_hqrelation"});
  boolean<&Self::inflow_possible>(
      "This option enables or disables inflowing discharges for a zhydrograph (is always off in coupling).")
      .defaultsTo("yes")
      .preset("true")
      .usedIf("type", {"zhydrograph", "coupling_zhydrograph"});
  boolean<&Self::zero_velocity>(
      "This parameter specifies if the velocites at the outer ghost cell shall be set to zero.")
      .defaultsTo("no")
      .preset("false")
      .usedIf("type", {"zhydrograph", "coupling_zhydrograph"});
  boolean<&Self::dynamic_slope>(
      "This bool defines dynamic slope adjustment due to erosion and deposition at upstream 'hydrograph' boundary.")
      .defaultsTo("no")
      .usedIf("type", {"hydrograph", "hqrelation"});
  real<&Self::dynamic_slope_xref>("Longitudinal reference to determine dynamic slope")
      .defaultsTo("18000.0")
      .unit("[m]")
      .usedIf("dynamic_slope", {"yes"});
  real<&Self::precision>("This is the precision in meters for the h-Q iterations.")
      .defaultsTo("-1.0")
      .unit("[m]")
      .usedIf("type", {"hydrograph", "coupling_hydrograph"});
  text<&Self::wse_calc_method>(
      "This option determines how the water surface elevation at a boundary with discharge or hq-relation condition is evaluated.")
      .defaultsTo("average")
      .oneOf({"average", "local"})
      .usedIf("type", {"hydrograph", "coupling_hydrograph", "hqrelation", "coupling_hqrelation"});
  text<&Self::conveyance_type>("The outflow over each edge is weighted with the local conveyance.")
      .defaultsTo("tables")
      .oneOf({"tables", "edge"})
      .usedIf("type", {"hqrelation", "coupling_hqrelation"});
  identifiedBy({"name"});
}

}  // namespace KESTparse
