#include "KESTparse/chain1d/IRbndr1d.h"

#include "KESTparse/base/Conversions.h"
#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/framework/Rules.h"
#include "KESTparse/root/IRdomain.h"

namespace KESTparse {

void IRbndr1d::getDescription(std::ostream& out) const {
  out << "Defines boundary conditions for hydraulics. For every different condition, a new block BOUNDARY has to be used.";
}

namespace {

constexpr Words weirs{"weir", "coupling_weir"};
constexpr Words gates{"gate", "coupling_gate"};
constexpr Words weirsAndGates{"weir", "coupling_weir", "gate", "coupling_gate"};

}  // namespace

void IRbndr1d::createTags() {
  word<&Self::name>("Unique identifier which is used to define controllers or couplings.")
      .preset("unnamed");
  text<&Self::string>(
      "'upstream' or 'downstream' are defined by the first resp. last entry in the cross section order list.")
      .mandatory()
      .preset("unknown_boundary_string")
      .oneOf({"upstream", "downstream"});
  text<&Self::type>(
      "hydrograph: This boundary condition for the upstream is a hydrograph describing the total discharge in time over a cross-string.")
      .mandatory()
      .preset("unknown_boundary_type")
      .oneOf({"hydrograph", "coupling_hydrograph", "zero_gradient", "coupling_zero_gradient",
              "weir", "coupling_weir", "wall", "gate", "coupling_gate", "hqrelation",
              "coupling_hqrelation", "zhydrograph", "coupling_zhydrograph", "coupling_connection"});
  seriesFile<&Self::file, &Self::file_table>("Name of input *.txt file; e.g. example.txt")
      .preset("unspecified_file.txt")
      .usedIf("type", {"hydrograph", "zhydrograph", "coupling_zhydrograph", "hqrelation",
                       "coupling_hqrelation"});
  real<&Self::precision>(
      "For iterative determination of the wetted area corresponding to discharge")
      .defaultsTo("0.0001")
      .unit("[m3/s]")
      .above(0)
      .usedIf("type", {"hydrograph", "coupling_hydrograph"});
  integer<&Self::number_of_iterations>(
      "Maximum number of iterations allowed for the iterative determination of the wetted area, before the computation is interrupted.")
      .defaultsTo("250")
      .preset("-100")
      .above(0)
      .usedIf("type", {"hydrograph", "coupling_hydrograph"});
  real<&Self::slope>(
      "Slope of the channel at the boundary, needed for a hydrograph boundary or a hqrelation boundary if the hq relation is not given as a table.")
      .preset("-100.0")
      .unit("per mill")
      .above(0)
      .usedIf("type", {"hydrograph", "coupling_hydrograph", "hqrelation", "coupling_hqrelation"});
  real<&Self::zhyd_relaxation_tau>(
      "Outflow in zhydrograph boundary is calculated in a way to have an exponential relaxation towards the desired water level.")
      .defaultsTo("10.0")
      .unit("m/1000m")
      .above(0)
      .usedIf("type", {"zhydrograph", "coupling_zhydrograph"});
  real<&Self::max_momentum_flux>(
      "Maximum possible value of momentum flux of zhydrograph boundary. Used to prevent unrealistic large values.")
      .preset("10000.0")
      .above(0)
      .usedIf("type", {"zhydrograph", "coupling_zhydrograph"});
  real<&Self::width>("Width of the weir crest or of the gate.")
      .preset("-100.0")
      .unit("[m]")
      .above(0)
      .usedIf("type", weirsAndGates)
      .exclusiveWith("width_file");
  seriesFile<&Self::width_file, &Self::width_file_table>(
      "Name of the file containing the time evolution of the weir width or gate width.")
      .preset("unspecified_widthfile.txt")
      .usedIf("type", weirsAndGates)
      .exclusiveWith("width");
  real<&Self::weir_level>("Constant level of weir crest.")
      .preset("-100.0")
      .unit("[m a.s.l.]")
      .atLeast(0)
      .usedIf("type", weirs)
      .exclusiveWith("weir_level_file");
  seriesFile<&Self::weir_level_file, &Self::weir_level_file_table>(
      "Name of the file containing the time evolution of the weir level.")
      .preset("unspecified_levelfile.txt")
      .usedIf("type", weirs)
      .exclusiveWith("weir_level");
  real<&Self::weir_bottom_level>(
      "Bottom level of weir cross section (minimal weir level and level for fully opened gate)")
      .preset("0.0")
      .unit("[m a.s.l.]")
      .atLeast(0)
      .usedIf("type", weirsAndGates);
  real<&Self::embankement_slope>(
      "Slope of weir embankments = 1:embankement_slope (symmetric). A value of 999 corresponds to rectangular embankements.")
      .defaultsTo("999")
      .preset("-100.0")
      .above(0)
      .usedIf("type", weirs);
  real<&Self::weir_my>("Weir factor according to Poleni.")
      .defaultsTo("0.65")
      .preset("-100.0")
      .atLeast(0)
      .usedIf("type", weirsAndGates);
  real<&Self::num_piers>("Number of piers at weir cross section.")
      .defaultsTo("0.0")
      .atLeast(0)
      .usedIf("type", weirs);
  real<&Self::c_pier>("Pier coefficient for calculation of reduced width.")
      .defaultsTo("0.0")
      .atLeast(0)
      .usedIf("type", weirs);
  real<&Self::c_abutments>("Abutment coefficient for calculation of reduced width.")
      .defaultsTo("0.0")
      .atLeast(0)
      .usedIf("type", weirs);
  text<&Self::calculation_type>("Type for control of momentum balance at weir:critical")
      .defaultsTo("critical")
      .oneOf({"critical", "standard"})
      .usedIf("type", weirsAndGates);
  real<&Self::zweir_fac_a>(
      "Scaling factor for weir water level (calculation_type = critical, zCorr = zCritWeir + F * (z - zCritWeir)): F = zweir_fac_a + zweir_fac_b * flowdepth")
      .defaultsTo("0.0")
      .usedIf("type", weirsAndGates);
  real<&Self::zweir_fac_b>(
      "Scaling factor for weir water level (calculation_type = critical, zCorr = zCritWeir + F * (z - zCritWeir))): F = zweir_fac_a + zweir_fac_b * flowdepth")
      .defaultsTo("0.0")
      .usedIf("type", weirsAndGates);
  real<&Self::gate_level>("Level of gate bottom, i.e. top of gate opening.")
      .preset("-100.0")
      .unit("[m a.s.l.]")
      .usedIf("type", gates)
      .exclusiveWith("gate_level_file");
  seriesFile<&Self::gate_level_file, &Self::gate_level_file_table>(
      "Name of the file containing the evolution of the gate level (i.e. top of gate opening) in time.")
      .preset("unspecified_file.txt")
      .usedIf("type", gates)
      .exclusiveWith("gate_level");
  real<&Self::gate_bottom_level>(
      "Level of bottom sill of gate cross section (level for closed gate).")
      .preset("-100.0")
      .unit("[m a.s.l.]")
      .above(0)
      .usedIf("type", gates);
  real<&Self::contraction_factor>(
      "Gate coefficient &mu considering the reduction of the opening height due to the 'vena contracta'.")
      .defaultsTo("0.62")
      .preset("-100.0")
      .atLeast(0)
      .usedIf("type", gates);
  identifiedBy({"name"});
}

void IRbndr1d::checkRules() {
  const bool isGate = isOneOf(type, {"gate", "coupling_gate"});
  if (type == "hydrograph" && !hasTag("slope")) {
    error<&Self::slope, &Self::type>(
        {"hydrograph-without-slope",
         "a boundary of type 'hydrograph' needs the average slope of the channel",
         "give it in per mill, such as 'slope = 1.0'"},
        "Tag 'slope' is mandatory for boundary conditions of type 'hydrograph' and 'hydrograph_coupling'");
  }
  if (type == "hqrelation" && hasTag("slope") == hasTag("file")) {
    error<&Self::slope, &Self::file, &Self::type>(
        {"hqrelation-slope-or-file",
         "a boundary of type 'hqrelation' needs either 'slope' or 'file', and has {0}",
         "give the slope of the channel in per mill, or name in 'file' the table of water levels "
         "and discharges, but not both"},
        "Boundary condition 'hqrelation' needs either slope or a file",
        hasTag("slope") ? "both" : "neither");
  }
  // A gate takes its width over time from 'width_file', but what counts here is 'file'.
  static constexpr char needsWidth[] =
      "Boundary condition '{}' needs either a 'width' for constant width or a 'file' containing varying width in time. ";
  if (isGate && !hasTag("width") && !hasTag("file")) {
    error<&Self::width, &Self::type>(
        {"gate-without-width", "a boundary of type '{0}' needs the width of the gate",
         "give 'width' in m, or name the series of widths in 'file': 'width_file' alone is not "
         "enough"},
        needsWidth, type);
  } else if (isGate && hasTag("slope") && hasTag("file")) {
    error<&Self::slope, &Self::file>(
        {"gate-slope-and-file", "a boundary of type '{0}' cannot have both 'slope' and 'file'",
         "remove 'slope', which a gate does not use"},
        needsWidth, type);
  }
  if (isGate && !hasTag("gate_bottom_level")) {
    error<&Self::gate_bottom_level, &Self::type>(
        {"gate-without-bottom-level", "a boundary of type '{0}' needs the level of its bottom sill",
         "give it in m above sea level, such as 'gate_bottom_level = 412.5'"},
        "Boundary condition '{}' needs a 'gate_bottom_level'. ", type);
  }
  // A coupling may feed a boundary that has a name.
  if (!hasTag("file") && type == "hydrograph" && !hasTag("name")) {
    error<&Self::file, &Self::type>(
        {"hydrograph-without-file",
         "a boundary of type '{0}' needs its discharges: it has no 'file', and no 'name' by which "
         "a coupling could feed it",
         "name the series of times and discharges in 'file', or give the boundary a 'name' for a "
         "coupling"},
        "Boundary condition '{}' needs a file (or coupling)", type);
  }
  constexpr double smallSlope = 0.1;
  if (hasTag("slope") && slope < smallSlope) {
    warning<&Self::slope>(
        {"small-slope", "a slope of {0} per mill is very small",
         "give 'slope' in per mill: 5 % are 'slope = 50'"},
        "The slope you defined ({}) is very small. Please note that you have to supply per mil values. E.g. a slope of 5% would correspond to 50!",
        doubleToString(slope));
  }
  checkWeirLevel(findSurroundings1d(*this));
}

void IRbndr1d::checkWeirLevel(const Surroundings1d& around) {
  const auto isControlled = [this, &around] {
    const auto [domain, calc1d] = around;
    ASSERT(domain != nullptr, "");
    ASSERT(calc1d != nullptr, "");
    return domain->isControlled(calc1d->region_name, name);
  };
  if (type == "weir" && hasTag("weir_level") && isControlled()) {
    warning<&Self::weir_level>(
        {"level-and-controller",
         "the weir '{0}' has a constant level, and a controller that moves it",
         "remove 'weir_level', or the MANIPULATED_VARIABLE that has the weir as its 'position'"},
        "The weir boundary '{}' has a level defined and a controller. This will not work together!",
        name);
  }
  if (isOneOf(type, {"weir", "coupling_weir"}) && !hasTag("weir_level") &&
      !hasTag("weir_level_file") && !isControlled()) {
    error<&Self::weir_level, &Self::weir_level_file, &Self::type>(
        {"weir-without-level", "a boundary of type '{0}' needs the level of the weir crest",
         "give it in m above sea level by 'weir_level', name its series in 'weir_level_file', or "
         "let a CONTROLLER move the weir"},
        "There is neither a level, nor a level_file nor a controller defining the weir level.",
        type);
  }
}

}  // namespace KESTparse
