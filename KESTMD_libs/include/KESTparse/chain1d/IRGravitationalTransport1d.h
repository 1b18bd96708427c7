#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `GRAVITATIONAL_TRANSPORT` under `MORPHOLOGY` of a 1D region.
class IRGravitationalTransport1d : public SchemaBlock<IRGravitationalTransport1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double failure_angle = 0;    ///< [Degree]
  double threshold_angle = 0;  ///< [Degree]
  int cycle_step = 0;
  int max_iterations = 0;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
