#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `FRICTION` under `HYDRAULICS` of a 1D region.
class IRfriction1d : public SchemaBlock<IRfriction1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  double default_friction = 0;
  bool grain_size_friction = false;
  double strickler_factor = 0;
  double roughness_factor = 0;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
