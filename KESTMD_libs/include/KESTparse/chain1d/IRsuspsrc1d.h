#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRsuspextsrc1d;

/// The block `SOURCE` under `SUSPENDED_LOAD` of a 1D region.
class IRsuspsrc1d : public SchemaBlock<IRsuspsrc1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<IRsuspextsrc1d*> extsrc_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
