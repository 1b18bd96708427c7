#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRspecout1d;

/// The block `OUTPUT` of a 1D region.
class IRoutput1d : public SchemaBlock<IRoutput1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double output_time_step = 0;   ///< [s]
  double console_time_step = 0;  ///< [s]
  double restart_time_step = 0;  ///< [s]

  std::vector<IRspecout1d*> specout_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
