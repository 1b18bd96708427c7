#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `STRINGDEF` under `GEOMETRY` of a 2D region.
class IRstringdef2d : public SchemaBlock<IRstringdef2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string upstream_direction;

  std::vector<int> string_nodes;  ///< node ids of the string; empty until the block is validated

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
