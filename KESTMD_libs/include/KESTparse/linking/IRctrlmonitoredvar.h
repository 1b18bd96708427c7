#pragma once

#include <map>
#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRcontroller;
class IRdomain;

/// The block `MONITORED_VARIABLE`.
class IRctrlmonitoredvar : public SchemaBlock<IRctrlmonitoredvar> {
 public:
  using SchemaBlock::SchemaBlock;

  /// What is measured.
  enum class MonitorVarType { wse = 1, Q = 2 };
  /// How the target is given.
  enum class RootValueType {
    fixed_value = 1,
    time_series = 2,
    discharge_series = 3,
    discharge_time_table = 4
  };

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::map<std::string, std::vector<double>> coefficients;
  MonitorVarType type{};
  RootValueType root_value_type{};
  double root_value = 0;
  std::string root_value_series_file;
  Kestrix::Table root_value_series_file_table;  ///< the rows of that file
  std::string root_value_qseries_varname;
  std::string position_identifier;  ///< what stands behind the dot of `position`
  std::string position_region;      ///< what stands before it
  double delay = 0;
  double time_average_sec = 0;

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  void checkDischargeName(const IRcontroller& controller);
  void checkPosition(const IRdomain& domain);
  void checkSeries();
};

}  // namespace KESTparse
