#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER` under `VEGETATION` of a 2D region.
class IRvegParameter2d : public SchemaBlock<IRvegParameter2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  int only_hydro = 0;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
