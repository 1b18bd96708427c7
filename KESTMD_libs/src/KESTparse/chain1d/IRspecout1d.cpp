#include "KESTparse/chain1d/IRspecout1d.h"

namespace KESTparse {

void IRspecout1d::getDescription(std::ostream& out) const {
  out << "Besides the default output, some extra output can be defined.";
}

namespace {

constexpr Words moments{"time", "max", "min"};
constexpr Words momentsAndSum{"time", "max", "min", "sum"};

}  // namespace

void IRspecout1d::createTags() {
  text<&Self::type>(
      "Defines the type of the special output. The following optional outputs can be generated")
      .mandatory()
      .preset("monitor")
      .oneOf({"monitor", "mixtures", "delta_v_sed", "delta_v_water", "transport_diagram",
              "delta_v_suspension", "KESTviz", "matlab", "matlab_flux"});
  real<&Self::output_time_step>("The output is printed for the given intervals.")
      .mandatory()
      .preset("-1.0")
      .unit("[s]")
      .atLeast(0);
  words<&Self::cross_sections>(
      "Names of the cross sections for which the monitoring point output has to be created.")
      .mandatory()
      .requiredIf("type", {"monitor"});
  words<&Self::A>("Wetted area of the cross section.").validEntries(moments);
  words<&Self::b>("Mean bottom level of the cross section.").validEntries(moments);
  words<&Self::Q>("Discharge in [m3/s].").validEntries(momentsAndSum);
  words<&Self::Qb>("Bedload discharge in [m3/s].").validEntries(momentsAndSum);
  words<&Self::TC>("Bedload transport capacity in [m3/s] without porosity.")
      .validEntries(momentsAndSum);
  words<&Self::GT>("Gravitational sediment transport in [m3/s].").validEntries(momentsAndSum);
  words<&Self::wse>("Water suface elevation.").validEntries(moments);
  words<&Self::energy_line>("Energy line.").validEntries(moments);
  words<&Self::v>("Velocity.").validEntries(moments);
  words<&Self::c>("Concentration.").validEntries(momentsAndSum);
  words<&Self::F>(
      "Froude number [-], calculated as F = v/(g·R)0.5 with v = Q/A [m/s] and R = A/L [m] v = flow velocity [m/s] R = hydraulic radius [m] Q = discharge [m3/s] A = flow area ...")
      .validEntries(moments);
  words<&Self::h>(
      "mean (average) flow depth [m], calculated as h = A/w A = flow area [m2] w = water surface width [m]")
      .validEntries(moments);
  text<&Self::variable>("Output (plot) of a specified variable")
      .defaultsTo("depth")
      .oneOf({"depth", "wse", "velocity", "tau"})
      .usedIf("type", {"KESTviz"});
  boolean<&Self::show_gridlines>("show gridlines", "Enable or disable gridline plotting.")
      .defaultsTo("no")
      .preset("false")
      .usedIf("type", {"KESTviz"});
  real<&Self::write_jpeg_image_time>(
      "This option determines if the KESTviz visualization shall render JPEG images.If this time is set to a value > 0.0 than each time intervall a JPEG image is created.")
      .defaultsTo("-1.0")
      .usedIf("type", {"KESTviz"});
  text<&Self::KESTextern>(
      "Parameter specifies the name of a defined KESTextern sub-domain within the domain.")
      .usedIf("type", {"monitor"});
  boolean<&Self::output_single_file>(
      "Parameter specifies if monitoring output is written to a single file or multiple files.")
      .defaultsTo("no")
      .usedIf("type", {"monitor"});
}

}  // namespace KESTparse
