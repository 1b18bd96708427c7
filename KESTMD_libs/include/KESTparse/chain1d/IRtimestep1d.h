#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `TIMESTEP` of a 1D region.
class IRtimestep1d : public SchemaBlock<IRtimestep1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double CFL = 0;                ///< [-]
  double maximum_time_step = 0;  ///< [s]
  double initial_time_step = 0;  ///< [s]
  double total_run_time = 0;     ///< [s]
  double start_time = 0;         ///< [s]

 protected:
  void createTags() override;
};

}  // namespace KESTparse
