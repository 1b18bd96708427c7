#include "KESTparse/plane2d/IRspecout2d.h"

#include <algorithm>

#include "KESTdatainfo/OutputAllBaseInfo.h"
#include "KESTparse/plane2d/IRkestplane.h"
#include "KESTparse/plane2d/IRmorph2d.h"
#include "KESTparse/root/IRdomain.h"

namespace KESTparse {

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
      .requiredIf("type", {"node_centered", "element_centered"});
  text<&Self::format>(
      "This option provides a choice between different formats for the output of salar or vector data on the mesh.")
      .mandatory()
      .oneOf({"ascii", "sms", "shape", "vtk", "hdf5"})
      .requiredIf("type", {"node_centered", "element_centered"});
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
      .usedIf("type", {"node_history", "element_history", "stringdef_history", "boundary_history",
                       "edge_history"});
  boolean<&Self::history_one_file>(
      "If set to 'yes', the time history outputs are written to one file instead of separate files.")
      .defaultsTo("no")
      .usedIf("type", {"node_history", "element_history", "stringdef_history", "boundary_history",
                       "edge_history"});
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
      .usedIf("type", {"node_centered", "element_centered"});
  real<&Self::threshold_wse>(
      "This parameter can be used to set a threshold for the output of the water surface elevation.")
      .defaultsTo("-1000000");
}

void IRspecout2d::checkRules() {
  has_value_range = hasTag("value_range");
  if (has_value_range) {
    ASSERT(value_range.size() == 2, "");
    if (value_range[0] > value_range[1]) {
      error("Tag 'value_range' is invalid (min > max)");
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
    warning(
        "The software SMS is only capable to visualize node centred data. It is therefore recommended to use the <b><i>node_centered</i></b> output type when using SMS for postprocessing. Use the QGIS plugin Crayfish for both <b><i>node_centered</i></b> and <b><i>element_centered</i></b> format");
  }
}

void IRspecout2d::checkSaturation() {
  const auto* const domain = ancestor<IRdomain>();
  const bool hasSubsurface = domain != nullptr && !domain->kestSub_ptrV.empty();
  for (const std::string& item : values) {
    if (item != "saturation") {
      continue;
    }
    if (type == "node_centered") {
      error(
          "Output 'saturation' in 'values' can not be generated for type 'node_centered'. Please choose 'element_centered' for this ouput.");
    } else if (type == "element_centered" && !hasSubsurface) {
      error(
          "Output 'saturation' in 'values' can not be generated without subsurface simulation. Please define a KESTSUB block!");
    }
  }
  for (const std::string& item : element_values) {
    if (item == "saturation" && type == "element_history" && !hasSubsurface) {
      error(
          "Output 'saturation' in 'element_values' can not be generated without subsurface simulation. Please define a KESTSUB block!");
    }
  }
}

void IRspecout2d::checkAllDependencies() {
  namespace catalogue = OutputAllBaseInfo;
  // Most lists are empty, and then the catalogue is not asked.
  const auto check = [this](const std::vector<std::string>& list, auto names, auto dependencies,
                            std::string_view listName) {
    if (!list.empty()) {
      checkOutputDependencies(list, names(), dependencies(), listName);
    }
  };
  check(node_values, catalogue::nodeValueNames, catalogue::nodeValueDependencies, "node_values");
  check(
      element_values, [] { return catalogue::elementValueNames(true); },
      [] { return catalogue::elementValueDependencies(true); }, "element_values");
  check(stringdef_values, catalogue::stringdefValueNames, catalogue::stringdefValueDependencies,
        "stringdef_values");
  check(edge_values, catalogue::edgeValueNames, catalogue::edgeValueDependencies, "edge_values");
  check(boundary_values, catalogue::boundaryValueNames, catalogue::boundaryValueDependencies,
        "boundary_values");
  check(balance_values, catalogue::balanceValueNames, catalogue::balanceValueDependencies,
        "balance_values");
  check(
      values, [] { return catalogue::allValueNames(true); },
      [] { return catalogue::allValueDependencies(true); }, "values");
}

void IRspecout2d::checkOutputDependencies(const std::vector<std::string>& list,
                                          const std::vector<std::string>& valid_values,
                                          const std::vector<std::uint32_t>& dependencies,
                                          std::string_view listName) {
  ASSERT(valid_values.size() == dependencies.size(),
         "error, dependencies and valid_values arrays have not the same length for "
             << listName << ". fix it in the OutputXXXData class");
  const auto* const region = ancestor<IRkestplane>();
  const IRmorph2d* const morphology = region == nullptr ? nullptr : region->morph_ptr;
  const bool hasBedload = morphology != nullptr && (morphology->bedload_ptr != nullptr ||
                                                    morphology->gravity_ptr != nullptr);
  const bool hasSuspension = morphology != nullptr && morphology->susp_load_ptr != nullptr;
  for (const std::string& item : list) {
    ASSERT(item.find('[') == std::string::npos || item.back() == ']', "tmp.size() == 2");
    const std::string_view value = splitOutputItem(item).value;
    const auto last = std::find(valid_values.rbegin(), valid_values.rend(), value);
    const auto idx = valid_values.rend() - last - 1;
    ASSERT(idx != -1, "");
    const std::uint32_t dependency = dependencies[static_cast<std::size_t>(idx)];
    if (dependency == OutputAllBaseInfo::always) {
      continue;
    }
    if (morphology == nullptr) {
      error(
          "Output of type '{}' defined in '{}' can not be generated without morphological simulation.",
          value, listName);
    } else if (dependency == OutputAllBaseInfo::needsBedload && !hasBedload) {
      error(
          "Output of type '{}' defined in '{}' can not be generated without bedload or gravitational transport simulation.",
          value, listName);
    } else if (dependency == OutputAllBaseInfo::needsSuspension && !hasSuspension) {
      error(
          "Output of type '{}' defined in '{}' can not be generated without suspended solid simulation.",
          value, listName);
    } else if (dependency == OutputAllBaseInfo::needsAnyTransport && !hasBedload &&
               !hasSuspension) {
      error(
          "Output of type '{}' defined in '{}' can not be generated without bedload or suspended solid simulation.",
          value, listName);
    }
  }
}

}  // namespace KESTparse
