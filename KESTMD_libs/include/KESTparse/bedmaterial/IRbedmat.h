#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/Rules.h"

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
  /// "1D" or "2D".
  [[nodiscard]] virtual std::string_view dimension() const = 0;

  /// Checks that the bedload formula of `block` suits the number of grain classes.
  void checkGrainsOf(InputBlock& block, const std::string& formula) const;

 protected:
  /// Checks the names of mixtures and soils against each other.
  void checkMixturesAndSoils(PairOrder mixturePairs);
};

}  // namespace KESTparse
