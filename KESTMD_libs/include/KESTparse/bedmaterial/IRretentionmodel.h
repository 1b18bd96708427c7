#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `RETENTION_MODEL` of a bed material or a soil.
class IRretentionmodel : public SchemaBlock<IRretentionmodel> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  double lambda = 0;  ///< [-]
  double l = 0;       ///< [-]
  double n = 0;       ///< [-]
  double alpha = 0;   ///< [1/m]
  double hs = 0;      ///< [m]

 protected:
  void createTags() override;
};

}  // namespace KESTparse
