#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `APPARENT_COHESION` under `MORPHOLOGY` of a 2D region.
class IRapparentCohesion : public SchemaBlock<IRapparentCohesion> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double saturation_threshold_deposition = 0;    ///< [-]
  double angle_deposition_delta = 0;             ///< [Degree]
  double local_slope_angle_repose_cohesion = 0;  ///< [Degree]
  double height_above_bed = 0;                   ///< [-]
  double factor_tau_suc = 0;                     ///< [-]
  double factor_tau_suc2 = 0;                    ///< [-]
  double deposition_threshold = 0;               ///< [m]
  std::string inverse_apparent;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
