#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRbedbndr2d;
class IRbedinnerbndr2d;
class IRbedloadDirection;
class IRbedloadFormula2d;
class IRbedparameter2d;

/// The block `BEDLOAD` under `MORPHOLOGY` of a 2D region.
class IRbedload2d : public SchemaBlock<IRbedload2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRbedloadFormula2d* formula_ptr = nullptr;
  IRbedparameter2d* parameter_ptr = nullptr;
  std::vector<IRbedbndr2d*> bndr_ptrV;
  std::vector<IRbedloadDirection*> lat_bedload_ptrV;
  std::vector<IRbedinnerbndr2d*> bedinnerbndr_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRulesAlways() override;
  void checkRules() override;
};

}  // namespace KESTparse
