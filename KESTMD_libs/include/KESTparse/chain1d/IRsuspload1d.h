#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRsuspbndr1d;
class IRsuspinit1d;
class IRsuspparam1d;
class IRsuspsrc1d;

/// The block `SUSPENDED_LOAD` under `MORPHOLOGY` of a 1D region.
class IRsuspload1d : public SchemaBlock<IRsuspload1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRsuspparam1d* susp_param_ptr = nullptr;
  std::vector<IRsuspbndr1d*> bndr_ptrV;
  IRsuspinit1d* susp_init_ptr = nullptr;
  IRsuspsrc1d* src_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
