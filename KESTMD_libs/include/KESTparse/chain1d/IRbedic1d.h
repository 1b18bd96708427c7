#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INITIAL` under `MORPHOLOGY` of a 1D region.
class IRbedic1d : public SchemaBlock<IRbedic1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
