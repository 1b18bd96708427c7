#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/framework/Derived.h"
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
  /// Whether there is a mixture of that name.
  [[nodiscard]] bool hasMixture(std::string_view name) const;
  /// "1D" or "2D".
  [[nodiscard]] virtual std::string_view dimension() const = 0;

  /// Reports to `block` that there are no grain classes; `text` is the converter's.
  void reportNoGrainClasses(InputBlock& block, fmt::format_string<> text) const;
  /// Reports to `morphology` a bedload formula, named by `tag`, that the number of grain classes
  /// does not suit.
  void checkBedloadFormula(InputBlock& morphology, const Subject& tag,
                           const std::string& formula) const;
  /// Reports to `parameter` settling velocities of its own, listed by `tag`, that are not one for
  /// each grain class.
  void checkSettlingVelocities(InputBlock& parameter, const Subject& tag,
                               const std::string& sinkVelocityType,
                               const std::vector<double>& velocities) const;

 protected:
  /// Reports mixtures that one grain class cannot have, and mixtures of the same name: each pair
  /// once, or in both orders.
  void checkMixtures(PairOrder order);
  /// Reports soils of the same name.
  void checkSoils();

 private:
  NameIndex mixtures_;
};

}  // namespace KESTparse
