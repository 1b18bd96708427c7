#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRbndr2d;
class IRfriction2d;
class IRic2d;
class IRinnerboundary2d;
class IRparam2d;
class IRsrc2d;
class IRturbulence2d;

/// The block `HYDRAULICS` of a 2D region.
class IRhydr2d : public SchemaBlock<IRhydr2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRparam2d* param_ptr = nullptr;
  IRfriction2d* friction_ptr = nullptr;
  std::vector<IRbndr2d*> bndr_ptrV;
  std::vector<IRinnerboundary2d*> innerbndr_ptrV;
  IRturbulence2d* turbulence_ptr = nullptr;
  IRic2d* ic_ptr = nullptr;
  IRsrc2d* src_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
