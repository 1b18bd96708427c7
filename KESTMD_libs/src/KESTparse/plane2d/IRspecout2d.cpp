#include "KESTparse/plane2d/IRspecout2d.h"

#include <algorithm>

#include "KESTdatainfo/OutputAllBaseInfo.h"
#include "KESTparse/plane2d/IRkestplane.h"
#include "KESTparse/plane2d/IRmorph2d.h"
#include "KESTparse/root/IRdomain.h"

namespace KESTparse {
namespace {

constexpr Words centered = {"node_centered", "element_centered"};
constexpr Words histories = {"node_history", "element_history", "stringdef_history",
                             "boundary_history", "edge_history"};

}  // namespace

void IRspecout2d::getDescription(std::ostream& out) const {
  out << "The Special Output block defines a desired output of a simulation.";
}

void IRspecout2d::createTags() {
  text<&Self::type>(
      "There are different types for the output. Dependent on the choice, further parameters may be needed.")
      .mandatory()
      .preset("undefinedType")
      .oneOf({"node_centered", "element_centered", "KESTviz", "node_history", "element_history",
              "stringdef_history", "edge_history", "boundary_history", "balance", "avs_ucd",
              "sediment_grid"});
  real<&Self::output_time_step>(
      "This parameter defines the interval in [s] for which the output shall be written.")
      .mandatory()
      .preset("100.0")
      .unit("[s]")
      .atLeast(0);
  outputValues<&Self::values>(
      "These are the variables which can be written either on the nodes or on the element centers of the grid.")
      .mandatory()
      .validEntries(OutputAllBaseInfo::allValueNames(true))
      .requiredIf("type", centered);
  text<&Self::format>(
      "This option provides a choice between different formats for the output of salar or vector data on the mesh.")
      .mandatory()
      .oneOf({"ascii", "sms", "shape", "vtk", "hdf5"})
      .requiredIf("type", centered);
  boolean<&Self::ids_instead_coords>(
      "This option provides the choice between two different idsmsentification types of nodes or elements respectively.")
      .defaultsTo("no")
      .usedIf("format", {"ascii"});
  boolean<&Self::split_file>(
      "This option provides the possibility to split the binary- or ascii-file into multiple files each containing ONE output variable.")
      .defaultsTo("no")
      .usedIf("format", {"vtk"});
  integer<&Self::flush_all_num_steps>(
      "If > 0, the output is flushed all N steps to disk. If this value is too small, you may slow down the simulation as it waits until all output has been flushed to disk.")
      .defaultsTo("0")
      .preset("-1.0")
      .unit("output steps")
      .atLeast(0)
      .usedIf("type", histories);
  boolean<&Self::history_one_file>(
      "If set to 'yes', the time history outputs are written to one file instead of separate files.")
      .defaultsTo("no")
      .usedIf("type", histories);
  integers<&Self::element_ids>(
      "This is a list of element indices for the use with output type 'element_history'.")
      .mandatory()
      .requiredIf("type", {"element_history"});
  outputValues<&Self::element_values>(
      "This is a list with all desired temporal output variables for an 'element_history'. It is also possible to generate contour plots of maximal, minimal and time-integrated values.")
      .mandatory()
      .validEntries(OutputAllBaseInfo::elementValueNames(true))
      .requiredIf("type", {"element_history"});
  integers<&Self::node_ids>(
      "This is a list of node indices for the use with output type 'node_history'.")
      .mandatory()
      .requiredIf("type", {"node_history"});
  outputValues<&Self::node_values>(
      "This is a list with all desired temporal output variables for a 'node_history'. It is also possible to generate contour plots of maximal, minimal and time-integrated values.")
      .mandatory()
      .validEntries(OutputAllBaseInfo::nodeValueNames())
      .requiredIf("type", {"node_history"});
  words<&Self::stringdefs>(
      "This is a list of STRINGDEF names for the use with output type 'stringdef_history'.")
      .mandatory()
      .requiredIf("type", {"stringdef_history"});
  outputValues<&Self::stringdef_values>(
      "This is a list with all desired temporal output variables for a 'stringdef_history'. 'Q' is the water discharge across a stringdef (e.g.")
      .mandatory()
      .validEntries(OutputAllBaseInfo::stringdefValueNames())
      .requiredIf("type", {"stringdef_history"});
  words<&Self::edge_ids>(
      "This is a list of node indices for the use with output type 'edge_history'.Every edge is defined by two nodes.")
      .mandatory()
      .requiredIf("type", {"edge_history"});
  outputValues<&Self::edge_values>(
      "This is a list with all desired temporal output variables for a 'edge_history'. Most output represents the distinct terms of the shallow water equations.")
      .mandatory()
      .validEntries(OutputAllBaseInfo::edgeValueNames())
      .requiredIf("type", {"edge_history"});
  outputValues<&Self::boundary_values>(
      "This is a list with all desired temporal output variables over all boundaries.")
      .mandatory()
      .validEntries(OutputAllBaseInfo::boundaryValueNames())
      .requiredIf("type", {"boundary_history"});
  outputValues<&Self::balance_values>(
      "This option produces an output with temporal changes of global properties.")
      .mandatory()
      .validEntries(OutputAllBaseInfo::balanceValueNames())
      .requiredIf("type", {"balance"});
  text<&Self::variable>("This option sets the default behaviour for the KESTviz visualisation.")
      .defaultsTo("depth")
      .oneOf({"depth", "wse", "velocity", "tau", "bedload", "bedelevation"})
      .usedIf("type", {"KESTviz"});
  text<&Self::wse3D>(
      "This option sets the default behaviour of the water surface elevation in 3D for the KESTviz visualisation.")
      .defaultsTo("off")
      .oneOf({"off", "on"})
      .usedIf("type", {"KESTviz"});
  text<&Self::vectors>(
      "This option sets the default behaviour of the vector visualisation for the KESTviz type.")
      .defaultsTo("off")
      .oneOf({"off", "on"})
      .usedIf("type", {"KESTviz"});
  text<&Self::gridlines>(
      "This option sets the default behaviour for the gridlines for the KESTviz visualisation.")
      .defaultsTo("off")
      .oneOf({"off", "on"})
      .usedIf("type", {"KESTviz"});
  real<&Self::vectors_scaling_factor>(
      "This option sets the default behaviour for the vector scaling of the KESTviz visualisation.")
      .defaultsTo("1.0")
      .usedIf("type", {"KESTviz"});
  real<&Self::write_jpeg_image_time>(
      "This option determines if the KESTviz visualization shall render JPEG images.If this time is set to a value > 0.0 than each time intervall a JPEG image is created.")
      .defaultsTo("-1.0")
      .usedIf("type", {"KESTviz"});
  reals<&Self::value_range>("This option sets the value range for the KESTviz default variable.")
      .items(2)
      .usedIf("type", {"KESTviz"});
  text<&Self::KESTextern>(
      "Parameter specifies the name of a defined KESTextern subdomain within the domain.")
      .usedIf("type", {"node_centered", "element_centered", "node_history", "element_history",
                       "stringdef_history", "edge_history", "boundary_history"});
  integers<&Self::ids>("Write output values only for the given element- or node-ids.")
      .items(2)
      .usedIf("type", centered);
  real<&Self::threshold_wse>(
      "This parameter can be used to set a threshold for the output of the water surface elevation.")
      .defaultsTo("-1000000");
}

void IRspecout2d::checkRules() {
  has_value_range = hasTag("value_range");
  if (has_value_range) {
    ASSERT(value_range.size() == 2, "");
    if (value_range[0] > value_range[1]) {
      error<&Self::value_range>(
          {"reversed-range", "the lower end of 'value_range' ({0}) is above the upper one ({1})",
           "write the smaller value first"},
          "Tag 'value_range' is invalid (min > max)", value_range[0], value_range[1]);
    }
  }
  const auto has = [](const std::vector<std::string>& list, std::string_view item) {
    return std::find(list.begin(), list.end(), item) != list.end();
  };
  // On nodes, the depth is derived from the water surface elevation.
  if (type == "node_centered" && has(values, "depth") && !has(values, "wse")) {
    values.emplace_back("wse");
  }
  checkSaturation();
  checkAllDependencies();
  if (format == "sms" && type == "element_centered") {
    warning<&Self::format, &Self::type>(
        {"sms-on-elements", "SMS shows values on nodes only, but the output is on elements",
         "set 'type = node_centered', or choose another 'format'"},
        "The software SMS is only capable to visualize node centred data. It is therefore recommended to use the <b><i>node_centered</i></b> output type when using SMS for postprocessing. Use the QGIS plugin Crayfish for both <b><i>node_centered</i></b> and <b><i>element_centered</i></b> format");
  }
}

void IRspecout2d::checkSaturation() {
  const bool hasSubsurface = !enclosing<IRdomain>().kestSub_ptrV.empty();
  const auto reportNoSubsurface = [this](const Subject& item, fmt::format_string<> text) {
    report(Severity::error, *this, {item},
           {"no-subsurface",
            "the saturation is known only where groundwater is simulated, but there is no KESTSUB",
            "add a KESTSUB block to DOMAIN, or remove 'saturation' from the list"},
           text);
  };
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] != "saturation") {
      continue;
    }
    if (type == "node_centered") {
      report(
          Severity::error, *this, {about<&Self::values>(*this, i + 1), about<&Self::type>(*this)},
          {"saturation-on-nodes", "the saturation is known on elements and not on nodes",
           "set 'type = element_centered', or remove 'saturation' from the list"},
          "Output 'saturation' in 'values' can not be generated for type 'node_centered'. Please choose 'element_centered' for this ouput.");
    } else if (type == "element_centered" && !hasSubsurface) {
      reportNoSubsurface(
          about<&Self::values>(*this, i + 1),
          "Output 'saturation' in 'values' can not be generated without subsurface simulation. Please define a KESTSUB block!");
    }
  }
  for (std::size_t i = 0; i < element_values.size(); ++i) {
    if (element_values[i] == "saturation" && type == "element_history" && !hasSubsurface) {
      reportNoSubsurface(
          about<&Self::element_values>(*this, i + 1),
          "Output 'saturation' in 'element_values' can not be generated without subsurface simulation. Please define a KESTSUB block!");
    }
  }
}

void IRspecout2d::checkAllDependencies() {
  namespace catalogue = OutputAllBaseInfo;
  // Most lists are empty, and then the catalogue is not asked.
  const auto check = [this](const std::vector<std::string>& list, const Subject& tag, auto names,
                            auto dependencies) {
    if (!list.empty()) {
      checkOutputDependencies(list, tag, names(), dependencies());
    }
  };
  check(node_values, about<&Self::node_values>(*this), catalogue::nodeValueNames,
        catalogue::nodeValueDependencies);
  check(
      element_values, about<&Self::element_values>(*this),
      [] { return catalogue::elementValueNames(true); },
      [] { return catalogue::elementValueDependencies(true); });
  check(stringdef_values, about<&Self::stringdef_values>(*this), catalogue::stringdefValueNames,
        catalogue::stringdefValueDependencies);
  check(edge_values, about<&Self::edge_values>(*this), catalogue::edgeValueNames,
        catalogue::edgeValueDependencies);
  check(boundary_values, about<&Self::boundary_values>(*this), catalogue::boundaryValueNames,
        catalogue::boundaryValueDependencies);
  check(balance_values, about<&Self::balance_values>(*this), catalogue::balanceValueNames,
        catalogue::balanceValueDependencies);
  check(
      values, about<&Self::values>(*this), [] { return catalogue::allValueNames(true); },
      [] { return catalogue::allValueDependencies(true); });
}

void IRspecout2d::checkOutputDependencies(const std::vector<std::string>& list, const Subject& tag,
                                          const std::vector<std::string>& valid_values,
                                          const std::vector<std::uint32_t>& dependencies) {
  const std::string_view listName = tag.member;
  ASSERT(valid_values.size() == dependencies.size(),
         "error, dependencies and valid_values arrays have not the same length for "
             << listName << ". fix it in the OutputXXXData class");
  for (std::size_t i = 0; i < list.size(); ++i) {
    ASSERT(list[i].find('[') == std::string::npos || list[i].back() == ']', "tmp.size() == 2");
    const std::string_view value = splitOutputItem(list[i]).value;
    const auto last = std::find(valid_values.rbegin(), valid_values.rend(), value);
    const auto idx = valid_values.rend() - last - 1;
    ASSERT(idx != -1, "");
    const std::uint32_t dependency = dependencies[static_cast<std::size_t>(idx)];
    if (dependency != OutputAllBaseInfo::always) {
      Subject item = tag;
      item.item = static_cast<std::uint32_t>(i + 1);
      checkOutputDependency(item, value, dependency);
    }
  }
}

void IRspecout2d::checkOutputDependency(const Subject& item, std::string_view value,
                                        std::uint32_t dependency) {
  const std::string_view listName = item.member;
  const IRmorph2d* const morphology = enclosing<IRkestplane>().morph_ptr;
  const bool hasBedload = morphology != nullptr && (morphology->bedload_ptr != nullptr ||
                                                    morphology->gravity_ptr != nullptr);
  const bool hasSuspension = morphology != nullptr && morphology->susp_load_ptr != nullptr;
  if (morphology == nullptr) {
    report(
        Severity::error, *this, {item},
        {"no-morphology",
         "'{0}' comes from the simulation of sediment, but the region has no MORPHOLOGY",
         "add a MORPHOLOGY block to the region, or remove '{0}' from '{1}'"},
        "Output of type '{}' defined in '{}' can not be generated without morphological simulation.",
        value, listName);
  } else if (dependency == OutputAllBaseInfo::needsBedload && !hasBedload) {
    report(
        Severity::error, *this, {item},
        {"no-bedload",
         "'{0}' comes from bed load or gravitational transport, but MORPHOLOGY has neither",
         "add BEDLOAD or GRAVITATIONAL_TRANSPORT to MORPHOLOGY, or remove '{0}' from '{1}'"},
        "Output of type '{}' defined in '{}' can not be generated without bedload or gravitational transport simulation.",
        value, listName);
  } else if (dependency == OutputAllBaseInfo::needsSuspension && !hasSuspension) {
    report(
        Severity::error, *this, {item},
        {"no-suspension", "'{0}' comes from suspended load, but MORPHOLOGY has none",
         "add SUSPENDED_LOAD to MORPHOLOGY, or remove '{0}' from '{1}'"},
        "Output of type '{}' defined in '{}' can not be generated without suspended solid simulation.",
        value, listName);
  } else if (dependency == OutputAllBaseInfo::needsAnyTransport && !hasBedload && !hasSuspension) {
    report(
        Severity::error, *this, {item},
        {"no-transport", "'{0}' comes from moving sediment, but MORPHOLOGY moves none",
         "add BEDLOAD, GRAVITATIONAL_TRANSPORT or SUSPENDED_LOAD to MORPHOLOGY, or remove '{0}' from '{1}'"},
        "Output of type '{}' defined in '{}' can not be generated without bedload or suspended solid simulation.",
        value, listName);
  }
}

}  // namespace KESTparse
