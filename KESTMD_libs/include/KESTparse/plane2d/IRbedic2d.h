#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INITIAL` under `MORPHOLOGY` of a 2D region.
class IRbedic2d : public SchemaBlock<IRbedic2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  double restart_solution_time = 0;  ///< [s]

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
