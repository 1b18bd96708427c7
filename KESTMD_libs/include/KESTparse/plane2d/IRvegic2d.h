#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INITIAL` under `VEGETATION` of a 2D region.
class IRvegic2d : public SchemaBlock<IRvegic2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  double restart_solution_time = 0;  ///< [s]
  std::vector<int> indexGrow;
  std::vector<int> index;
  double B = 0;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
