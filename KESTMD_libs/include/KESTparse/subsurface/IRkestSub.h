#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRbndrSub;
class IRgeomSub;
class IRicSub;
class IRmaterialSub;
class IRoutputSub;
class IRparamSub;
class IRsrcSub;
class IRtimestepSub;

/// The block `KESTSUB`.
class IRkestSub : public SchemaBlock<IRkestSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string region_name;

  IRgeomSub* geom_ptr = nullptr;
  IRtimestepSub* timestep_ptr = nullptr;
  IRparamSub* param_ptr = nullptr;
  IRicSub* initial_ptr = nullptr;
  std::vector<IRbndrSub*> bndr_ptrV;
  IRmaterialSub* material_ptr = nullptr;
  IRsrcSub* source_ptr = nullptr;
  IRoutputSub* out_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
