#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `FORMULA` under `BEDLOAD` of a 1D region.
class IRbedloadFormula1d : public SchemaBlock<IRbedloadFormula1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string bedload_formula;
  double bedload_factor = 0;
  double bedload_exponent = 0;
  double theta_critical = 0;
  std::string theta_critical_approach;
  std::string theta_critical_hiding;
  double critical_shear_stress_calibration = 0;
  double hiding_exponent = 0;
  double power_law_a = 0;
  double power_law_b = 0;
  double alpha = 0;
  double d90 = 0;              ///< [mm]
  double d30 = 0;              ///< [mm]
  double angle_of_repose = 0;  ///< [degree]
  double bed_forms = 0;
  std::string local_slope;
  std::string use_energy_slope;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
