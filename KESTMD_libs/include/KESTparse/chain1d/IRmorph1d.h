#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRGravitationalTransport1d;
class IRbedic1d;
class IRbedload1d;
class IRbedmat1d;
class IRmorphparam1d;
class IRmorphsrc1d;
class IRsuspload1d;

/// The block `MORPHOLOGY` of a 1D region.
class IRmorph1d : public SchemaBlock<IRmorph1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRmorphparam1d* morphparam_ptr = nullptr;
  IRbedmat1d* bedmat_ptr = nullptr;
  IRbedload1d* bedload_ptr = nullptr;
  IRsuspload1d* susp_load_ptr = nullptr;
  IRbedic1d* initial_ptr = nullptr;
  IRmorphsrc1d* source_ptr = nullptr;
  IRGravitationalTransport1d* gravity_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRulesAlways() override;
};

}  // namespace KESTparse
