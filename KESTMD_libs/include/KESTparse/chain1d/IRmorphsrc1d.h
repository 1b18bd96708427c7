#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRmorphextsrc1d;

/// The block `SOURCE` under `MORPHOLOGY` of a 1D region.
class IRmorphsrc1d : public SchemaBlock<IRmorphsrc1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<IRmorphextsrc1d*> extsrc_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
