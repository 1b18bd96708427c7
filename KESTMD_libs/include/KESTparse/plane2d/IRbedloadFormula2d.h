#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `FORMULA` under `BEDLOAD` of a 2D region.
class IRbedloadFormula2d : public SchemaBlock<IRbedloadFormula2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string bedload_formula;
  double bedload_factor = 0;
  double bedload_exponent = 0;
  std::vector<int> theta_critical_index;
  std::vector<double> theta_critical;
  std::string theta_critical_approach;
  std::string theta_critical_hiding;
  std::string local_slope_correction;
  double critical_shear_stress_calibration = 0;
  double hiding_exponent = 0;
  double power_law_a = 0;
  double power_law_b = 0;
  double alpha = 0;
  double d90 = 0;  ///< [mm]
  double d30 = 0;  ///< [mm]
  std::string bedforms_type;
  std::vector<int> bedforms_index;
  std::vector<double> bedforms_factor;
  double slope_dependent_bedforms_factor = 0;  ///< [-]
  double slope_limit_bedforms = 0;             ///< [-]

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
