#include "KESTparse/chain1d/IRextsrc1d.h"

#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/framework/Rules.h"
#include "KESTparse/root/IRdomain.h"

namespace KESTparse {

void IRextsrc1d::getDescription(std::ostream& out) const {
  out << "Specifies sources and sinks static or in time for parts or the whole area.";
}

namespace {

constexpr Words sideWeirs{"sideweir", "coupling_sideweir"};
constexpr Words outflows{"sideweir", "coupling_sideweir", "bottom_opening"};

}  // namespace

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
      .usedIf("type", sideWeirs);
  real<&Self::weir_crest_length>("Length of the sideweir [m].")
      .preset("-1.0")
      .above(0)
      .usedIf("type", sideWeirs);
  real<&Self::poleni>("Poleni factor for the sideweir outlfow [-].")
      .preset("-1.0")
      .atLeast(0)
      .atMost(1)
      .usedIf("type", sideWeirs);
  text<&Self::momentum_sink>("Determines if the source also affects the momentum.")
      .defaultsTo("yes")
      .preset("unspecified_momentum_sink")
      .oneOf({"yes", "no"})
      .usedIf("type", outflows);
  real<&Self::momentum_factor>("Factor to control the momentum source term [-]. Default: 1.0.")
      .defaultsTo("1.0")
      .atLeast(0)
      .usedIf("type", outflows);
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

void IRextsrc1d::checkRules() {
  const IRgeom1d* const geometry = enclosing<IRcalc1d>().geom_ptr;
  if (isOneOf(type, {"qlateral", "coupling_qlateral", "sideweir", "coupling_sideweir",
                     "bottom_opening"}) &&
      geometry != nullptr) {
    geometry->requireCrossSection(
        *this, {about<&Self::cross_section>(*this), about<&Self::type>(*this)}, cross_section);
  }
  if (isOneOf(type, {"qlateral", "coupling_qlateral"})) {
    checkInflow();
  }
  if (isOneOf(type, {"off_channel", "coupling_off_channel"}) && geometry != nullptr) {
    checkOffChannel(*geometry);
  }
}

void IRextsrc1d::checkInflow() {
  const auto [domain, calc1d] = findSurroundings1d(*this);
  if (domain == nullptr || calc1d == nullptr) {
    return;
  }
  if (type == "qlateral" && !hasTag("file") && !domain->isControlled(calc1d->region_name, name)) {
    error<&Self::file, &Self::type>(
        {"inflow-without-file",
         "the lateral inflow '{0}' has no 'file', and no controller that sets it",
         "name the series of times and discharges in 'file', or let a CONTROLLER set the inflow"},
        "For the qlateral source, you have either to define the qseries via a series file or have a controller defining the inflow.",
        name);
  }
}

void IRextsrc1d::checkOffChannel(const IRgeom1d& geometry) {
  // Without the tag both names are empty, which is the name of no cross section.
  const std::string section1 = cross_sections.empty() ? std::string() : cross_sections.front();
  const std::string section2 = cross_sections.empty() ? std::string() : cross_sections.back();
  const int index1 = geometry.crossSectionIndex(section1);
  const int index2 = geometry.crossSectionIndex(section2);
  ASSERT(index1 != -1, "error off-channel source: cross section " << section1 << " not found!");
  ASSERT(index2 != -1, "error off-channel source: cross section " << section2 << " not found!");
  const auto requireUpstreamNeighbour = [this](int index, std::size_t item,
                                               const std::string& section) {
    if (index < 1) {
      report(
          Severity::error, *this, {about<&Self::cross_sections>(*this, item)},
          {"first-cross-section",
           "the off-channel source names '{0}', the first cross section of the region",
           "name in 'cross_sections' two cross sections that have others upstream of them"},
          "Cross section '{}' for offchannel EXTERNAL_SOURCE could not be found in the cross-section order. Use the exact names of the two bounding cross sections as defined in GEOMETRY 'cross_section_order'.",
          section);
    }
  };
  requireUpstreamNeighbour(index1, 1, section1);
  requireUpstreamNeighbour(index2, 2, section2);
  const Subject first = about<&Self::cross_sections>(*this, 1);
  const Subject second = about<&Self::cross_sections>(*this, 2);
  if (index1 == index2) {
    report(
        Severity::error, *this, {second, first},
        {"same-cross-sections", "the off-channel source lies between '{0}' and '{0}'",
         "name two different cross sections, the upstream one first"},
        "Both cross sections for offchannel EXTERNAL SOURCE are identical. You have to provide two different cross_sections as defined in GEOMETRY. The offchannel will act between these two cross sections.",
        section1);
  }
  if (index2 < index1) {
    report(
        Severity::error, *this, {second, first},
        {"cross-section-order",
         "cross section '{1}' lies upstream of '{0}', which is named before it",
         "name the upstream cross section first: 'cross_sections = ({1} {0})'"},
        "Cross section '{}' and '{}' for offchannel EXTERNAL SOURCE are not in successive order. Both cross sections need to be in order from up- to downstream according to the definitions in GEOMOETRY block.",
        section1, section2);
  }
}

}  // namespace KESTparse
