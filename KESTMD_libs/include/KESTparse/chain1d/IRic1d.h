#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INITIAL` under `HYDRAULICS` of a 1D region.
class IRic1d : public SchemaBlock<IRic1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  double q_out = 0;    ///< [m3/s]
  double WSE_out = 0;  ///< [m rel.]

 protected:
  void createTags() override;
};

}  // namespace KESTparse
