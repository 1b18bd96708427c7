#pragma once

#include <vector>

#include "KESTparse/framework/InputBlock.h"

namespace KESTparse {

class IRgrainclass;
class IRmixtr;
class IRsoilass;
class IRsoildef;

/// What the bed materials of 1D and 2D regions have in common.
class IRbedmat : public InputBlock {
 public:
  using InputBlock::InputBlock;

  IRgrainclass* grncls_ptr = nullptr;
  std::vector<IRmixtr*> mixtr_ptrV;
  std::vector<IRsoildef*> soildef_ptrV;
  IRsoilass* soilass_ptr = nullptr;

  /// Number of grain classes; none without the block that lists them.
  [[nodiscard]] std::size_t numGrainClasses() const;
};

}  // namespace KESTparse
