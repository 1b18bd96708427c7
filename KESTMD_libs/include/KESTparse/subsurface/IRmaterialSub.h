#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRsoilSub;

/// The block `MATERIAL` of a subsurface region.
class IRmaterialSub : public SchemaBlock<IRmaterialSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<IRsoilSub*> soil_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
