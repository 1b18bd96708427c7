#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRspecoutSub;

/// The block `OUTPUT` of a subsurface region.
class IRoutputSub : public SchemaBlock<IRoutputSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double output_time_step = 0;   ///< [s]
  double console_time_step = 0;  ///< [s]
  double restart_time_step = 0;  ///< [s]

  std::vector<IRspecoutSub*> specout_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
