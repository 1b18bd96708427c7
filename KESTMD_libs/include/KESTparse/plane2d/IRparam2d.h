#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER` under `HYDRAULICS` of a 2D region.
class IRparam2d : public SchemaBlock<IRparam2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double minimum_water_depth = 0;  ///< [m]
  std::string riemann_solver;
  double riemann_tolerance = 0;  ///< [m]
  std::string simulation_scheme;
  std::string dynamic_depth_solver;
  double dynamic_depth_solver_precision = 0;  ///< [m]
  double geo_min_area_ratio = 0;              ///< [-]
  double geo_max_angle_quadrilateral = 0;     ///< [-]
  double geo_min_aspect_ratio = 0;            ///< [-]

  bool velocity_update_depth = false;  ///< set by the validation

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
