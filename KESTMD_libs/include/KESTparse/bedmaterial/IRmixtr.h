#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `MIXTURE` under `BEDMATERIAL`.
class IRmixtr : public SchemaBlock<IRmixtr> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::vector<double> volume_fraction;  ///< [%]

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
