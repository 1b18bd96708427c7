#include "KESTparse/plane2d/IRbndr2d.h"

#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRgeom2d.h"
#include "KESTparse/plane2d/IRhydr2d.h"
#include "KESTparse/plane2d/IRkestplane.h"
#include "KESTparse/plane2d/IRstringdef2d.h"

namespace KESTparse {
namespace {

// Types of boundaries that have tags of their own, alone and coupled.
constexpr Words hydrographs = {"hydrograph", "coupling_hydrograph"};
constexpr Words hqrelations = {"hqrelation", "coupling_hqrelation"};
constexpr Words zhydrographs = {"zhydrograph", "coupling_zhydrograph"};
constexpr Words hydrographsAndHqrelations = {"hydrograph", "coupling_hydrograph", "hqrelation",
                                             "coupling_hqrelation"};

}  // namespace

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
      .usedIf("type", hydrographsAndHqrelations);
  real<&Self::max_interval>(
      "This parameter is used for the calculation of the h-Q tables in case of a hydrograph boundary condition.")
      .defaultsTo("20")
      .preset("-1")
      .unit("[m]")
      .atLeast(0)
      .usedIf("type", hydrographs);
  integer<&Self::number_of_iterations>(
      "This parameter is used for the calculation of the h-Q tables in case of a hydrograph boundary condition.")
      .defaultsTo("5000")
      .preset("-1")
      .above(0)
      .usedIf("type", hydrographs);
  text<&Self::weighting_type>(
      "A hydrograph inflow boundary as well as the h-Q outflow boundary need to split up the total discharge to the distinct edges using a weighting method.")
      .defaultsTo("conveyance")
      .oneOf({"conveyance", "area"})
      .usedIf("type", hydrographsAndHqrelations);
  boolean<&Self::wall_flux>(
      "This option handles the behaviour of partially wetted elements near a h-Q boundary condition.")
      .defaultsTo("no")
      .preset("false")
      .usedIf("type", hqrelations);
  boolean<&Self::inflow_possible>(
      "This option enables or disables inflowing discharges for a zhydrograph (is always off in coupling).")
      .defaultsTo("yes")
      .preset("true")
      .usedIf("type", zhydrographs);
  boolean<&Self::zero_velocity>(
      "This parameter specifies if the velocites at the outer ghost cell shall be set to zero.")
      .defaultsTo("no")
      .preset("false")
      .usedIf("type", zhydrographs);
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
      .usedIf("type", hydrographs);
  text<&Self::wse_calc_method>(
      "This option determines how the water surface elevation at a boundary with discharge or hq-relation condition is evaluated.")
      .defaultsTo("average")
      .oneOf({"average", "local"})
      .usedIf("type", hydrographsAndHqrelations);
  text<&Self::conveyance_type>("The outflow over each edge is weighted with the local conveyance.")
      .defaultsTo("tables")
      .oneOf({"tables", "edge"})
      .usedIf("type", hqrelations);
  identifiedBy({"name"});
}

void IRbndr2d::checkRules() {
  const IRgeom2d* const geometry = enclosing<IRkestplane>().geom_ptr;
  if (geometry != nullptr && type != "pore_pressures_coupling" &&
      geometry->findString(string_name) == nullptr) {
    error<&Self::string_name>(
        {"unknown-string", "there is no STRINGDEF named '{0}' in this region",
         "name one of the STRINGDEF blocks in GEOMETRY{1}, or define '{0}' there"},
        "'string_name' '{}' not found in any STRINGDEF block. Make sure the boundary_string_name has the same name as a defined unique string in the STRINGDEF block.",
        string_name, perhaps(string_name, geometry->stringdef_ptrV, &IRstringdef2d::name));
  }
  if (type == "hqrelation") {
    checkHqrelation();
  }
  if (type == "hydrograph") {
    if (!(slope > 0)) {
      error<&Self::slope, &Self::type>(
          {"hydrograph-without-slope",
           "a hydrograph needs the average slope of its cross section, above 0",
           "give it in per mill, such as 'slope = 1.0'"},
          "A 'slope' must be defined for the hydrograph inflow boundary condition. ");
    }
    if (hasNoFile()) {
      error<&Self::file, &Self::type>(
          {"hydrograph-without-file", "a hydrograph needs a file with its discharge over time",
           "name in 'file' a text of two columns, the time in s and the discharge in m3/s"},
          "A 'file' must be defined for the hydrograph inflow boundary condition. ");
    }
  }
  // A controller may move the weir; whether one does makes no difference here.
  if (type == "weir" && hasNoFile()) {
    error<&Self::file, &Self::type>(
        {"weir-without-file", "a weir needs a file with its level over time",
         "name in 'file' a text of two columns, the time in s and the level in m a.s.l."},
        "A 'file' must be defined for the weir boundary condition. ");
  }
  if (isOneOf(type,
              {"coupling_hydrograph", "coupling_weir", "coupling_gate", "coupling_zero_gradient",
               "coupling_hqrelation", "coupling_zhydrograph", "pore_pressures_coupling"}) &&
      name == "unspecified_name") {
    error<&Self::name, &Self::type>(
        {"coupling-without-name",
         "a boundary of type '{0}' needs a name that COUPLINGS can refer to",
         "give it a 'name' of its own, such as 'name = upstream_end'"},
        "A unique 'name' must be defined for the coupling boundary conditions. ", type);
  }
  if (isOneOf(type, {"coupling_weir", "coupling_gate"}) && my <= 0) {
    error<&Self::my, &Self::type>(
        {"coupling-without-my", "a boundary of type '{0}' needs its Poleni factor",
         "give 'my' a value above 0 and up to 1, such as 'my = 0.6'"},
        "When using boundary type 'coupling_weir' or 'coupling_gate', a Poleni factor 'my' is needed (>0).",
        type);
  }
}

void IRbndr2d::checkHqrelation() {
  if (slope <= -100.0 && file == "UnspecifiedBoundaryFile") {
    error<&Self::slope, &Self::file, &Self::type>(
        {"hqrelation-without-slope-or-file",
         "an h-Q relation needs the average slope of its cross section, or a file with the relation",
         "give the slope in per mill, such as 'slope = 1.0', or name in 'file' a text of water levels and discharges"},
        "Either a 'slope' or a 'file' must be defined for the hqrelation boundary condition. Please complete the input data for the hqrelation!");
  }
  if (dynamic_slope && !enclosing<IRhydr2d>().hasDynamicInflow()) {
    error<&Self::dynamic_slope>(
        {"dynamic-slope-without-inflow",
         "the h-Q relation has a dynamic slope, but no hydrograph of this region has one",
         "set 'dynamic_slope = yes' in the BOUNDARY of type 'hydrograph' upstream, or 'dynamic_slope = no' here"},
        "Dynamic slope for downstream 'hqrrelation' can be used only in combination with dynamic slope for upstream 'hydrograph' boundary. Please adapt the input accordingly!");
  }
}

bool IRbndr2d::hasNoFile() const {
  return file.empty() || file == "UnspecifiedBoundaryFile";
}

}  // namespace KESTparse
