#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRbndrExtern;

/// The block `KEST_EXTERN`.
class IRkestextern : public SchemaBlock<IRkestextern> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string region_name;
  std::string fixed_time_step;
  int port = 0;
  std::string ip;

  std::vector<IRbndrExtern*> bndr_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
