#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INITIAL` under `SUSPENDED_LOAD` of a 1D region.
class IRsuspinit1d : public SchemaBlock<IRsuspinit1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  double concentration = 0;  ///< [-]
  std::string mixture;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
