#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRextsrc1d;

/// The block `SOURCE` under `HYDRAULICS` of a 1D region.
class IRsrc1d : public SchemaBlock<IRsrc1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<IRextsrc1d*> extsrc_ptrV;

 protected:
  friend SchemaBlock;
  static constexpr std::string_view listOwner = "this->";

  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
