#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `FRICTION` under `HYDRAULICS` of a 2D region.
class IRfriction2d : public SchemaBlock<IRfriction2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  double default_friction =
      0;  ///< [s/m^(1/3)] Manning, [m^(1/3)/s] Strickler, [m] equivalent sand roughness.
  std::string input_type;
  std::vector<int> index;
  std::vector<double> friction;
  std::string wall_friction;
  double wall_friction_factor = 0;
  std::string grain_size_friction;
  double strickler_factor = 0;
  double fixed_bed_d90 = 0;  ///< [mm]
  double roughness_factor = 0;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
