#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `LAYER` under `SOIL_DEF`.
class IRsublayer : public SchemaBlock<IRsublayer> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string mixture;
  double bottom_elevation = 0;  ///< [m]

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
