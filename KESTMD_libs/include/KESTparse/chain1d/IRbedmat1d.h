#pragma once

#include <vector>

#include "KESTparse/bedmaterial/IRbedmat.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BEDMATERIAL` under `MORPHOLOGY` of a 1D region.
class IRbedmat1d : public SchemaBlock<IRbedmat1d, IRbedmat> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;
  [[nodiscard]] std::string_view dimension() const override { return "1D"; }

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
