#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRmorphextsrc2d;

/// The block `SOURCE` under `MORPHOLOGY` of a 2D region.
class IRmorphsrc2d : public SchemaBlock<IRmorphsrc2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<IRmorphextsrc2d*> extsrc_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
