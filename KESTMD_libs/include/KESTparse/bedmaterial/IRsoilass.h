#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `SOIL_ASSIGNMENT` under `BEDMATERIAL`.
class IRsoilass : public SchemaBlock<IRsoilass> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<int> index;
  std::vector<std::string> soil;
  std::string type;

 protected:
  void createTags() override;
  void checkRulesAlways() override;
};

}  // namespace KESTparse
