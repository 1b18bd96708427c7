#include "KESTparse/plane2d/IRbndr2d.h"

#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRgeom2d.h"
#include "KESTparse/plane2d/IRhydr2d.h"
#include "KESTparse/plane2d/IRkestplane.h"
#include "KESTparse/root/IRdomain.h"

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

void IRbndr2d::checkRules() {
  const auto* const hydraulics = ancestor<IRhydr2d>();
  const auto* const region = ancestor<IRkestplane>();
  ASSERT(hydraulics != nullptr, "this->parent_ != nullptr");
  ASSERT(region != nullptr, "this->parent_->parent_ != nullptr");
  if (region->geom_ptr != nullptr && type != "pore_pressures_coupling" &&
      region->geom_ptr->findString(string_name) == nullptr) {
    error(
        "'string_name' '{}' not found in any STRINGDEF block. Make sure the boundary_string_name has the same name as a defined unique string in the STRINGDEF block.",
        string_name);
  }
  if (type == "hqrelation") {
    checkHqrelation(*hydraulics);
  }
  if (type == "hydrograph") {
    if (!(slope > 0)) {
      error("A 'slope' must be defined for the hydrograph inflow boundary condition. ");
    }
    if (hasNoFile()) {
      error("A 'file' must be defined for the hydrograph inflow boundary condition. ");
    }
  }
  if (type == "weir") {
    checkWeir();
  }
  if (isOneOf(type,
              {"coupling_hydrograph", "coupling_weir", "coupling_gate", "coupling_zero_gradient",
               "coupling_hqrelation", "coupling_zhydrograph", "pore_pressures_coupling"}) &&
      name == "unspecified_name") {
    error("A unique 'name' must be defined for the coupling boundary conditions. ");
  }
  if (isOneOf(type, {"coupling_weir", "coupling_gate"}) && my <= 0) {
    error(
        "When using boundary type 'coupling_weir' or 'coupling_gate', a Poleni factor 'my' is needed (>0).");
  }
}

void IRbndr2d::checkHqrelation(const IRhydr2d& hydraulics) {
  if (slope <= -100.0 && file == "UnspecifiedBoundaryFile") {
    error(
        "Either a 'slope' or a 'file' must be defined for the hqrelation boundary condition. Please complete the input data for the hqrelation!");
  }
  if (dynamic_slope && !hydraulics.hasDynamicInflow()) {
    error(
        "Dynamic slope for downstream 'hqrrelation' can be used only in combination with dynamic slope for upstream 'hydrograph' boundary. Please adapt the input accordingly!");
  }
}

void IRbndr2d::checkWeir() {
  ASSERT(ancestor<IRdomain>() != nullptr, "this->parent_->parent_->getParent() != nullptr");
  // A controller may move the weir; whether one does makes no difference here.
  if (hasNoFile()) {
    error("A 'file' must be defined for the weir boundary condition. ");
  }
}

bool IRbndr2d::hasNoFile() const {
  return file.empty() || file == "UnspecifiedBoundaryFile";
}

}  // namespace KESTparse
