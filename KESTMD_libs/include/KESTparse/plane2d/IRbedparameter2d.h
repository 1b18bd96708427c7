#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER` under `BEDLOAD` of a 2D region.
class IRbedparameter2d : public SchemaBlock<IRbedparameter2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<int> upwind_index;
  std::vector<double> upwind;
  double bedload_routing_start = 0;  ///< [s]
  std::string limit_bedload_wetted;
  std::string use_real_edge_lengths;
  std::string use_cell_averaged_bedload_flux;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
