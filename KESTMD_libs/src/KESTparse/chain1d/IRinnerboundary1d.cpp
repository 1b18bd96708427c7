#include "KESTparse/chain1d/IRinnerboundary1d.h"

#include <algorithm>

#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRinnerboundary1d::getDescription(std::ostream& out) const {
  out << "This block is used to define inner boundaries within a 1D grid. Possible choices are weir and gate.";
}

namespace {

constexpr Words innerGates{"gate", "coupling_gate"};
constexpr Words innerWeirsAndGates{"weir", "coupling_weir", "gate", "coupling_gate"};
constexpr Words gatesWithFlap{"gate_with_flap", "radial_gate_with_flap"};

}  // namespace

void IRinnerboundary1d::createTags() {
  text<&Self::type>("weir: The location of the inner weir is defined by the tag string_name1.")
      .mandatory()
      .preset("notype")
      .oneOf({"weir", "gate"});
  text<&Self::cross_section_name_1>(
      "This is the name of a cross sectionUsually, the first string is the upstream one.")
      .mandatory()
      .preset("unspecified_stringname");
  text<&Self::cross_section_name_2>(
      "This is the name of a cross section. Usually, the second string is the downstream one.")
      .mandatory()
      .preset("unspecified_stringname");
  real<&Self::width>("Width of the weir crest or of the gate.")
      .preset("-100.0")
      .unit("[m]")
      .above(0)
      .usedIf("type", innerWeirsAndGates)
      .exclusiveWith("width_file");
  seriesFile<&Self::width_file, &Self::width_file_table>(
      "Name of the file containing the time evolution of the weir width or gate width.")
      .preset("unspecified_widthfile.txt")
      .usedIf("type", innerWeirsAndGates)
      .exclusiveWith("width");
  real<&Self::weir_level>("Constant level of weir crest.")
      .preset("-100.0")
      .unit("[m a.s.l.]")
      .usedIf("type", innerWeirsAndGates)
      .exclusiveWith("weir_level_file");
  seriesFile<&Self::weir_level_file, &Self::weir_level_file_table>(
      "Name of the file containing the time evolution of the weir level.")
      .preset("unspecified_levelfile.txt")
      .usedIf("type", innerWeirsAndGates)
      .exclusiveWith("weir_level");
  real<&Self::weir_bottom_level>(
      "Bottom level of weir cross section (minimal weir level and level for fully opened gate)")
      .preset("0.0")
      .unit("[m a.s.l.]")
      .above(0)
      .usedIf("type", innerWeirsAndGates);
  real<&Self::embankement_slope>(
      "Slope of weir embankments = 1:embankement_slope (symmetric). A value of 999 corresponds to rectangular embankements.")
      .defaultsTo("999")
      .preset("NO_EMBANKEMENT_SLOPE")
      .above(0)
      .usedIf("type", innerWeirsAndGates);
  real<&Self::weir_my>("Weir factor μ according to Poleni.")
      .defaultsTo("0.65")
      .preset("-100000.0")
      .above(0)
      .usedIf("type", innerWeirsAndGates);
  real<&Self::num_piers>("Number of piers at weir cross section.")
      .defaultsTo("0.0")
      .atLeast(0)
      .usedIf("type", innerWeirsAndGates);
  real<&Self::c_pier>("Pier coefficient for calculation of reduced width.")
      .defaultsTo("0.0")
      .atLeast(0)
      .usedIf("type", innerWeirsAndGates);
  real<&Self::c_abutments>("Abutment coefficient for calculation of reduced width.")
      .defaultsTo("0.0")
      .atLeast(0)
      .usedIf("type", innerWeirsAndGates);
  text<&Self::calculation_type>("Type for control of momentum balance at weir:critical")
      .defaultsTo("critical")
      .oneOf({"critical", "standard"})
      .usedIf("type", innerWeirsAndGates);
  real<&Self::zweir_fac_a>(
      "Scaling factor for weir water level (calculation_type = critical, zCorr = zCritWeir + F * (z - zCritWeir)): F = zweir_fac_a + zweir_fac_b * flowdepth")
      .defaultsTo("1.0")
      .preset("0.0")
      .usedIf("type", innerWeirsAndGates);
  real<&Self::zweir_fac_b>(
      "Scaling factor for weir water level (calculation_type = critical, zCorr = zCritWeir + F * (z - zCritWeir))): F = zweir_fac_a + zweir_fac_b * flowdepth")
      .defaultsTo("0.0")
      .usedIf("type", innerWeirsAndGates);
  text<&Self::gate_type>("Type of gate: sluice gate: simple sluice gate gate with flap")
      .preset("no_gate_type")
      .oneOf({"sluice_gate", "gate_with_flap", "radial_gate_with_flap"})
      .usedIf("type", innerGates);
  real<&Self::gate_my>(
      "Weir coefficient μ used in discharge formula for flow over gate with flap. Can be used for calibration of the discharge.")
      .defaultsTo("0.65")
      .preset("-100000.0")
      .above(0)
      .usedIf("gate_type", gatesWithFlap);
  real<&Self::gate_level>("Level of gate bottom, i.e. top of gate opening.")
      .preset("-100.0")
      .unit("[m rel.]")
      .usedIf("type", innerGates)
      .exclusiveWith("gate_level_file");
  seriesFile<&Self::gate_level_file, &Self::gate_level_file_table>(
      "Name of the file containing the evolution of the gate level (i.e. top of gate opening) in time.")
      .preset("unspecified_levelfile.txt")
      .usedIf("type", innerGates)
      .exclusiveWith("gate_level");
  real<&Self::gate_bottom_level>(
      "Level of bottom sill of gate cross section (level for closed gate).")
      .preset("-100.0")
      .unit("[m a.s.l.]")
      .above(0)
      .usedIf("type", innerGates);
  real<&Self::gate_size>(
      "Size of gate is used for definition of the level of the flap; level of the flap = gate_level + gate_size")
      .preset("-100.0")
      .unit("[m]")
      .above(0)
      .usedIf("gate_type", gatesWithFlap)
      .exclusiveWith("gate_size_file");
  seriesFile<&Self::gate_size_file, &Self::gate_size_file_table>(
      "Name of the file containing the evolution of the gate size (movement of flap) in time.Specify size in [m].")
      .preset("unspecified_widthfile.txt")
      .usedIf("gate_type", gatesWithFlap)
      .exclusiveWith("gate_size");
  real<&Self::contraction_factor>(
      "Contraciton factor δ for calculation of gate coefficient considering the reduction of the opening height due to the 'vena contracta'.")
      .defaultsTo("0.62")
      .preset("NO_MY")
      .atLeast(0)
      .usedIf("gate_type", {"gate_with_flap", "sluice_gate"});
  text<&Self::ehead_reference_location>("Location (cross section name) of reference energy head.")
      .mandatory()
      .preset("unspecified_stringname")
      .usedIf("type", {"gate", "weir"});
  real<&Self::margin>(
      "Radial gate with flap only:Nonlinear computation of gate coefficient depending on gate opening.gate opening <= margin")
      .defaultsTo("0.0")
      .unit("[m]")
      .atLeast(0)
      .usedIf("gate_type", {"radial_gate_with_flap"});
  real<&Self::a1>("Parameter a1 for calculation of gate coefficient phi (see tag margin).")
      .defaultsTo("0.6559")
      .usedIf("gate_type", {"radial_gate_with_flap"});
  real<&Self::b1>("Parameter b1 for calculation of gate coefficient phi (see tag margin).")
      .defaultsTo("-0.1084")
      .usedIf("gate_type", {"radial_gate_with_flap"});
  real<&Self::a2>("Parameter a2 for calculation of gate coefficient phi (see tag margin).")
      .defaultsTo("0.6559")
      .usedIf("gate_type", {"radial_gate_with_flap"});
  real<&Self::b2>("Parameter b2 for general calculation of gate coefficient phi (see tag margin).")
      .defaultsTo("-0.1084")
      .usedIf("gate_type", {"radial_gate_with_flap"});
}

void IRinnerboundary1d::checkRules() {
  const IRgeom1d* const geometry = enclosing<IRcalc1d>().geom_ptr;
  if (geometry == nullptr) {
    return;
  }
  // Of a name that stands twice in the order the last place counts.
  const auto require = [this, geometry](const Subject& side, const std::string& crossSection) {
    const NameIndex::Places places = geometry->crossSections(crossSection);
    if (places.count == 0) {
      reportUnknownSide(
          *this, side, crossSection, perhaps(crossSection, geometry->cross_section_order),
          {"unknown-cross-section", "there is no cross section '{0}' in this region",
           "name a cross section of 'cross_section_order' in GEOMETRY{1}, or add '{0}' there"});
    }
    return places;
  };
  const NameIndex::Places side1 =
      require(about<&Self::cross_section_name_1>(*this), cross_section_name_1);
  const NameIndex::Places side2 =
      require(about<&Self::cross_section_name_2>(*this), cross_section_name_2);
  if (side1.count > 0 && side2.count > 0 && side1.last == side2.last) {
    error<&Self::cross_section_name_2, &Self::cross_section_name_1>(
        {"same-cross-sections", "the inner boundary has '{1}' on both sides",
         "name in 'cross_section_name_2' the next cross section downstream of '{1}'"},
        "The two cross sections for an inner boundary of type '{}' have to adjacent and are not!",
        type, cross_section_name_1);
  }
}

}  // namespace KESTparse
