#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRextsrc2d;

/// The block `SOURCE` under `HYDRAULICS` of a 2D region.
class IRsrc2d : public SchemaBlock<IRsrc2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<IRextsrc2d*> extsrc_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
