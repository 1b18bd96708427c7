#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRcalc1d;
class IRkestplane;

/// The block `MANIPULATED_VARIABLE`.
class IRctrlmanipulatedvar : public SchemaBlock<IRctrlmanipulatedvar> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string position_identifier;  ///< what stands behind the dot of `position`
  std::string position_region;      ///< what stands before it
  double start_value = 0;
  double max_change_rate = 0;
  std::vector<double> range;       ///< [m rel.]
  std::vector<double> time_range;  ///< [s]
  double steady_value = 0;

  bool has_max_change_rate = false;  ///< the tag was given; set by the validation
  bool has_range = false;            ///< the tag was given; set by the validation
  bool has_time_range = false;       ///< the tag was given; set by the validation

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  void checkPlace(const IRcalc1d& chain);
  void checkPlace(const IRkestplane& plane);
};

}  // namespace KESTparse
