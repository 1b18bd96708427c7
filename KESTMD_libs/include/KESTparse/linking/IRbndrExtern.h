#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BOUNDARY`.
class IRbndrExtern : public SchemaBlock<IRbndrExtern> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
