#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `TIMESTEP` of a subsurface region.
class IRtimestepSub : public SchemaBlock<IRtimestepSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double time_step = 0;       ///< [s]
  double total_run_time = 0;  ///< [s]
  double start_time = 0;      ///< [s]

 protected:
  void createTags() override;
};

}  // namespace KESTparse
