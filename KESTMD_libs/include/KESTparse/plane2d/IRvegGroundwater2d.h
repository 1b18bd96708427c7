#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `GROUNDWATER` under `VEGETATION` of a 2D region.
class IRvegGroundwater2d : public SchemaBlock<IRvegGroundwater2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double offset = 0;                     ///< [m]
  double maximum_distance = 0;           ///< [m]
  double maximum_distance_increase = 0;  ///< [m]
  double power_distance = 0;
  int minimum_points_within = 0;
  std::vector<double> time_Zw;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
