#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BIOMASS` under `VEGETATION` of a 2D region.
class IRvegBiomass2d : public SchemaBlock<IRvegBiomass2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double growth_rate = 0;  ///< [s^{-1}]
  double lambda_1 = 0;     ///< [m^{-1}]
  double lambda_2 = 0;     ///< [m^{-1}]
  double z_0 = 0;          ///< [m]
  double maximum_carrying_capacity = 0;
  std::vector<double> time_veg_growth;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
