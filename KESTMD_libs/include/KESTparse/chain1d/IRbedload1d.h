#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRbedbndr1d;
class IRbedloadFormula1d;
class IRbedparameter1d;

/// The block `BEDLOAD` under `MORPHOLOGY` of a 1D region.
class IRbedload1d : public SchemaBlock<IRbedload1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRbedparameter1d* parameter_ptr = nullptr;
  IRbedloadFormula1d* formula_ptr = nullptr;
  std::vector<IRbedbndr1d*> bndr_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
