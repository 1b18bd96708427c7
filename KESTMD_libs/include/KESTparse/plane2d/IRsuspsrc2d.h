#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRsuspextsrc2d;

/// The block `SOURCE` under `SUSPENDED_LOAD` of a 2D region.
class IRsuspsrc2d : public SchemaBlock<IRsuspsrc2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<IRsuspextsrc2d*> extsrc_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
