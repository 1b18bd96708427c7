#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRextsrcSub;

/// The block `SOURCE` of a subsurface region.
class IRsrcSub : public SchemaBlock<IRsrcSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<IRextsrcSub*> extsrc_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
