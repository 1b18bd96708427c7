#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `GRAIN_CLASS` under `BEDMATERIAL`.
class IRgrainclass : public SchemaBlock<IRgrainclass> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<double> diameters;  ///< [mm]

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
