#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRGravitationalTransport;
class IRapparentCohesion;
class IRbedic2d;
class IRbedload2d;
class IRbedmat2d;
class IRmorphparam2d;
class IRmorphsrc2d;
class IRsuspload2d;

/// The block `MORPHOLOGY` of a 2D region.
class IRmorph2d : public SchemaBlock<IRmorph2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRmorphparam2d* morphparam_ptr = nullptr;
  IRbedmat2d* bedmat_ptr = nullptr;
  IRbedload2d* bedload_ptr = nullptr;
  IRbedic2d* ic_ptr = nullptr;
  IRsuspload2d* susp_load_ptr = nullptr;
  IRGravitationalTransport* gravity_ptr = nullptr;
  IRmorphsrc2d* src_ptr = nullptr;
  IRapparentCohesion* apparentcohesion_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
