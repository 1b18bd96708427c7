#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `FIXED_BED` under `BEDMATERIAL` of a 2D region.
class IRfixbed2d : public SchemaBlock<IRfixbed2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  std::vector<int> node_ids;
  std::vector<double> zb_fix;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
