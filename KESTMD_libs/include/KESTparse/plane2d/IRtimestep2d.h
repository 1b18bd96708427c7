#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `TIMESTEP` of a 2D region.
class IRtimestep2d : public SchemaBlock<IRtimestep2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double CFL = 0;                ///< [-]
  double minimum_time_step = 0;  ///< [s]
  double maximum_time_step = 0;  ///< [s]
  double initial_time_step = 0;  ///< [s]
  double total_run_time = 0;     ///< [s]
  double start_time = 0;         ///< [s]
  std::string ignore_wave_celerity;
  double maximum_waterdepth = 0;  ///< [m]
  std::string morph_cycle;
  double cycle_step = 0;  ///< [-]
  std::string cycle_step_file;
  Kestrix::Table cycle_step_file_table;  ///< the rows of that file

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
