#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRspecout2d;

/// The block `OUTPUT` of a 2D region.
class IRoutput2d : public SchemaBlock<IRoutput2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double console_time_step = 0;  ///< [s]
  double restart_time_step = 0;  ///< [s]
  std::string reference_time;

  std::vector<IRspecout2d*> specout_ptrV;

  /// The value of `restart_time_step` [s] that says that none was chosen.
  static constexpr double noRestartTime = -1.0;
  /// The reference time, a Julian date: 1 January 1950.
  double referenceJulianDate = 2433282.5;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void initialise() override;
  void checkRules() override;
};

}  // namespace KESTparse
