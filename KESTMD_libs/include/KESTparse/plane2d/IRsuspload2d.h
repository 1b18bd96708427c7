#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRsuspbndr2d;
class IRsuspinit2d;
class IRsuspparam2d;
class IRsuspsrc2d;

/// The block `SUSPENDED_LOAD` under `MORPHOLOGY` of a 2D region.
class IRsuspload2d : public SchemaBlock<IRsuspload2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRsuspparam2d* susp_param_ptr = nullptr;
  std::vector<IRsuspbndr2d*> bndr_ptrV;
  IRsuspinit2d* susp_init_ptr = nullptr;
  IRsuspsrc2d* src_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
