#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER` under `BEDLOAD` of a 1D region.
class IRbedparameter1d : public SchemaBlock<IRbedparameter1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double upwind = 0;
  std::string abrasion;
  int hydro_step = 0;
  std::string velocity_area;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
