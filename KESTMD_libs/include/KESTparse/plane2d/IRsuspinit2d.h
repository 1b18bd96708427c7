#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INITIAL` under `SUSPENDED_LOAD` of a 2D region.
class IRsuspinit2d : public SchemaBlock<IRsuspinit2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  std::vector<int> index;
  std::vector<double> concentration;
  std::vector<std::string> mixture;
  double restart_solution_time = 0;  ///< [s]

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  void checkIndexTable();
};

}  // namespace KESTparse
