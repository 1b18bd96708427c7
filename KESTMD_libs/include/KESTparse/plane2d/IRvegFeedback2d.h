#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `FEEDBACK` under `VEGETATION` of a 2D region.
class IRvegFeedback2d : public SchemaBlock<IRvegFeedback2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double theta_critic_veg = 0;
  double theta_critic_grain = 0;
  double ks_grain = 0;     ///< [m^{1/3}s^{-1}]
  double ks_veg = 0;       ///< [m^{1/3}s^{-1}]
  double z_uprooting = 0;  ///< [m]
  double z_burial = 0;     ///< [m]

 protected:
  void createTags() override;
};

}  // namespace KESTparse
