#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `EXTERNAL_SOURCE` under `SOURCE` of a subsurface region.
class IRextsrcSub : public SchemaBlock<IRextsrcSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double value = 0;  ///< [m2/s]
  std::vector<double> x_values;
  std::vector<double> y_values;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
