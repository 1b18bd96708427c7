#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `MOVABLE_BED` under `GEOMETRY` of a 2D region.
class IRgeombc2d : public SchemaBlock<IRgeombc2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file

 protected:
  void createTags() override;
};

}  // namespace KESTparse
