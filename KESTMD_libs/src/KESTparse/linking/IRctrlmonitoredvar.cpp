#include "KESTparse/linking/IRctrlmonitoredvar.h"

#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/linking/IRcontroller.h"
#include "KESTparse/plane2d/IRgeom2d.h"
#include "KESTparse/plane2d/IRkestplane.h"
#include "KESTparse/root/IRdomain.h"

namespace KESTparse {

void IRctrlmonitoredvar::getDescription(std::ostream& out) const {
  out << "This block defines a monitored variable for a PID- or HID-controller.";
}

void IRctrlmonitoredvar::createTags() {
  word<&Self::name>(
      "Unique name of the monitored variable. This name may be used by other monitored variables which depend on this measurement.")
      .mandatory();
  taggedReals<&Self::coefficients>(
      "List of PID-coefficients. Length and meaning depend on controller type.")
      .repeatable();
  choice<&Self::type, MonitorVarType>(
      "Type of monitored variable. Q is the discharge, wse is the water surface elevation",
      {{"wse", MonitorVarType::wse}, {"Q", MonitorVarType::Q}})
      .mandatory();
  choice<&Self::root_value_type, RootValueType>(
      "The root_value_type is only needed for PID-controllers.",
      {{"fixed_value", RootValueType::fixed_value},
       {"time_series", RootValueType::time_series},
       {"discharge_series", RootValueType::discharge_series},
       {"discharge_time_table", RootValueType::discharge_time_table}})
      .defaultsTo("fixed_value");
  real<&Self::root_value>("The root value is the constant target value which shall be established.")
      .defaultsTo("0.0")
      .usedIf("root_value_type", {"fixed_value"});
  seriesFile<&Self::root_value_series_file, &Self::root_value_series_file_table>(
      "Name of file where the discharge and/or time series are stored")
      .mandatory()
      .requiredIf("root_value_type", {"time_series", "discharge_series", "discharge_time_table"});
  text<&Self::root_value_qseries_varname>(
      "This references to the name of another monitored variable which influences the target to be reached. Has to be provided for discharge_series and discharge_time_table.")
      .mandatory()
      .requiredIf("root_value_type", {"discharge_series", "discharge_time_table"});
  positionOf<&Self::position_identifier, &Self::position_region>(
      "position", "Identifier for the location, where you want to monitor a discharge or a wse.")
      .mandatory();
  real<&Self::delay>("The time delay for feeding the monitored value into the controller.")
      .defaultsTo("0.0")
      .atLeast(0);
  real<&Self::time_average_sec>(
      "Defines the interval from which the time-average of the monitored value is calculated. This can be used as a low-pass filter to reduce numerical or physical oscillations.")
      .defaultsTo("0.0")
      .atLeast(0);
  identifiedBy({"name"});
}

void IRctrlmonitoredvar::checkRules() {
  const auto* const controller = ancestor<IRcontroller>();
  const auto* const domain = ancestor<IRdomain>();
  if (controller == nullptr || domain == nullptr) {
    return;
  }
  if (root_value_type == RootValueType::discharge_series) {
    checkDischargeName(*controller);
  }
  checkPosition(*domain);
  if (hasTag("root_value_series_file")) {
    checkSeries();
  }
  std::size_t i = 0;
  for (const auto& [variable, values] : coefficients) {
    ++i;
    if (!controller->hasManipulated(variable)) {
      error("The mapped coefficients nr. {} point to an non-existing manipulated variable '{}'", i,
            variable);
    }
  }
}

void IRctrlmonitoredvar::checkDischargeName(const IRcontroller& controller) {
  const IRctrlmonitoredvar* const discharge = controller.findMonitored(root_value_qseries_varname);
  if (discharge == nullptr) {
    error("root_value uses 'discharge_series', but no monitored value named '{}' exists.",
          root_value_qseries_varname);
  } else if (discharge->type != MonitorVarType::Q) {
    warning(
        "root_value uses 'discharge_series', but monitored value named '{}' does not monitor Q.",
        root_value_qseries_varname);
  }
}

void IRctrlmonitoredvar::checkPosition(const IRdomain& domain) {
  const IRcalc1d* const chain = domain.findChain(position_region);
  const IRkestplane* const plane = domain.findPlane(position_region);
  if (chain == nullptr && plane == nullptr) {
    error("There is no region named '{}'.", position_region);
  } else if (chain != nullptr && plane != nullptr) {
    error("There is a 1D and a 2D region named '{}'. So I don't know which one to use.",
          position_region);
  } else if (chain != nullptr) {
    if (chain->geom_ptr != nullptr &&
        chain->geom_ptr->crossSectionIndex(position_identifier) == -1) {
      error("Cross section '{}' does not exist.", position_identifier);
    }
  } else if (type == MonitorVarType::Q && plane->geom_ptr != nullptr &&
             plane->geom_ptr->findString(position_identifier) == nullptr) {
    error("Stringdef '{}' does not exist.", position_identifier);
  }
}

void IRctrlmonitoredvar::checkSeries() {
  const std::string& file = getTag("root_value_series_file", 0).getRawValue();
  const std::size_t rows = root_value_series_file_table.size();
  if (rows < 2) {
    error("The series file '{}' has {} data rows while at least 2 are expected", file, rows);
    return;
  }
  const std::size_t columns = root_value_series_file_table[0].size();
  if (columns < 2) {
    error("The series file '{}' has {} data column(s)", file, columns);
  } else if (columns > 2 && (root_value_type == RootValueType::time_series ||
                             root_value_type == RootValueType::discharge_series)) {
    error("The series file '{}' has {} data column(s) while expected 2", file, columns);
  }
}

}  // namespace KESTparse
