#include "KESTparse/linking/IRctrlmonitoredvar.h"

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

}  // namespace KESTparse
