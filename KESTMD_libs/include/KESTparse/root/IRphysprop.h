#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PHYSICAL_PROPERTIES`.
class IRphysprop : public SchemaBlock<IRphysprop> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;
  void getExample(std::ostream& out) const override;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
