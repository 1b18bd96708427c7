#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRcoupling;
class IRcouplingLateral;
class IRcouplingparam;

/// The block `COUPLINGS`.
class IRcouplings : public SchemaBlock<IRcouplings> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRcouplingparam* coupling_param_ptr = nullptr;
  std::vector<IRcoupling*> coupling_ptrV;
  std::vector<IRcouplingLateral*> couplingLateral_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
