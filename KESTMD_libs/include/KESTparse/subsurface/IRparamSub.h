#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER` of a subsurface region.
class IRparamSub : public SchemaBlock<IRparamSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  double cs_factor = 0;  ///< [-]
  double theta_s = 0;    ///< [-]
  double theta_r = 0;    ///< [-]
  std::string activate_cells;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
