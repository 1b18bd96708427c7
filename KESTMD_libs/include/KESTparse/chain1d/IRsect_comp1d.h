#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `SECTION_COMPUTATION` under `PARAMETER` of a 1D region.
class IRsect_comp1d : public SchemaBlock<IRsect_comp1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string internal_levees;
  double precision = 0;     ///< [m2]
  double min_interval = 0;  ///< [m]
  double max_interval = 0;  ///< [m]

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
