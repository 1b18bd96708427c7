#pragma once

#include <vector>

#include "KESTparse/bedmaterial/IRbedmat.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRfixbed2d;
class IRretentionmodel;

/// The block `BEDMATERIAL` under `MORPHOLOGY` of a 2D region.
class IRbedmat2d : public SchemaBlock<IRbedmat2d, IRbedmat> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;
  [[nodiscard]] std::string_view dimension() const override { return "2D"; }

  IRfixbed2d* fixbed_ptr = nullptr;
  IRretentionmodel* retentionmodel_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
