#include "KESTparse/linking/IRctrlmonitoredvar.h"

#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/framework/Rules.h"
#include "KESTparse/linking/IRcontroller.h"
#include "KESTparse/linking/IRctrlmanipulatedvar.h"
#include "KESTparse/plane2d/IRgeom2d.h"
#include "KESTparse/plane2d/IRkestplane.h"
#include "KESTparse/plane2d/IRstringdef2d.h"
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
  const auto& controller = enclosing<IRcontroller>();
  if (root_value_type == RootValueType::discharge_series) {
    checkDischargeName(controller);
  }
  checkPosition(enclosing<IRdomain>());
  if (hasTag("root_value_series_file") && GlobalValues::instance().readsFiles) {
    checkSeries();
  }
  std::size_t i = 0;
  for (const auto& [variable, values] : coefficients) {
    ++i;
    if (!controller.hasManipulated(variable)) {
      error<&Self::coefficients>(
          {"unknown-variable", "the controller has no MANIPULATED_VARIABLE named '{1}'",
           "give the 'name' of one of its MANIPULATED_VARIABLE blocks{2}, or define '{1}' there"},
          "The mapped coefficients nr. {} point to an non-existing manipulated variable '{}'", i,
          variable, perhaps(variable, controller.manipulated, &IRctrlmanipulatedvar::name));
    }
  }
}

void IRctrlmonitoredvar::checkDischargeName(const IRcontroller& controller) {
  const IRctrlmonitoredvar* const discharge = controller.findMonitored(root_value_qseries_varname);
  if (discharge == nullptr) {
    error<&Self::root_value_qseries_varname>(
        {"unknown-discharge", "the controller has no MONITORED_VARIABLE named '{0}'",
         "give the 'name' of one that has 'type = Q'{1}"},
        "root_value uses 'discharge_series', but no monitored value named '{}' exists.",
        root_value_qseries_varname,
        perhaps(root_value_qseries_varname, controller.monitored, &Self::name));
  } else if (discharge->type != MonitorVarType::Q) {
    report(Severity::warning, *this,
           {about<&Self::root_value_qseries_varname>(*this), about<&Self::type>(*discharge)},
           {"not-a-discharge", "the MONITORED_VARIABLE '{0}' does not measure a discharge",
            "set 'type = Q' in it, or name another one that has this type"},
           "root_value uses 'discharge_series', but monitored value named '{}' does not monitor Q.",
           root_value_qseries_varname);
  }
}

void IRctrlmonitoredvar::checkPosition(const IRdomain& domain) {
  const IRcalc1d* const chain = domain.findChain(position_region);
  const IRkestplane* const plane = domain.findPlane(position_region);
  if (chain == nullptr && plane == nullptr) {
    error<&Self::position_identifier>(
        {"unknown-region", "there is no 1D or 2D region named '{0}'",
         "give the 'region_name' and the place, such as 'position = my_region.my_section'{1}"},
        "There is no region named '{}'.", position_region, domain.perhapsRegion(position_region));
  } else if (chain != nullptr && plane != nullptr) {
    report(Severity::error, *this,
           {about<&Self::position_identifier>(*this), about<&IRcalc1d::region_name>(*chain),
            about<&IRkestplane::region_name>(*plane)},
           {"ambiguous-region", "a 1D and a 2D region are both named '{0}'",
            "give one of the two another 'region_name'"},
           "There is a 1D and a 2D region named '{}'. So I don't know which one to use.",
           position_region);
  } else if (chain != nullptr) {
    if (chain->geom_ptr != nullptr &&
        chain->geom_ptr->crossSectionIndex(position_identifier) == -1) {
      error<&Self::position_identifier>(
          {"unknown-cross-section", "region '{1}' has no cross section '{0}'",
           "name a cross section of 'cross_section_order' in its GEOMETRY{2}"},
          "Cross section '{}' does not exist.", position_identifier, position_region,
          perhaps(position_identifier, chain->geom_ptr->cross_section_order));
    }
  } else if (type == MonitorVarType::Q && plane->geom_ptr != nullptr &&
             plane->geom_ptr->findString(position_identifier) == nullptr) {
    error<&Self::position_identifier>(
        {"unknown-string", "region '{1}' has no STRINGDEF named '{0}'",
         "name one of the STRINGDEF blocks in its GEOMETRY{2}, or define '{0}' there"},
        "Stringdef '{}' does not exist.", position_identifier, position_region,
        perhaps(position_identifier, plane->geom_ptr->stringdef_ptrV, &IRstringdef2d::name));
  }
}

void IRctrlmonitoredvar::checkSeries() {
  const std::string& file = getTag("root_value_series_file", 0).getRawValue();
  const std::size_t rows = root_value_series_file_table.size();
  if (rows < 2) {
    error<&Self::root_value_series_file>(
        {"short-series", "the series '{0}' needs two rows of numbers or more, and has {1}",
         "write one row for each time or discharge into the file"},
        "The series file '{}' has {} data rows while at least 2 are expected", file, rows);
    return;
  }
  const std::size_t columns = root_value_series_file_table[0].size();
  if (columns < 2) {
    error<&Self::root_value_series_file>(
        {"series-columns", "the series '{0}' needs two columns of numbers or more, and has {1}",
         "write two numbers into each row of the file: the time or discharge, and the target"},
        "The series file '{}' has {} data column(s)", file, columns);
  } else if (columns > 2 && (root_value_type == RootValueType::time_series ||
                             root_value_type == RootValueType::discharge_series)) {
    error<&Self::root_value_series_file, &Self::root_value_type>(
        {"series-columns", "the series '{0}' needs two columns of numbers, and has {1}",
         "write two numbers into each row of the file: the time or discharge, and the target"},
        "The series file '{}' has {} data column(s) while expected 2", file, columns);
  }
}

}  // namespace KESTparse
