#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRretentionmodel;
class IRzoneSub;

/// The block `SOIL_DEF` under `MATERIAL` of a subsurface region.
class IRsoilSub : public SchemaBlock<IRsoilSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double kf = 0;  ///< [m/s]
  std::string zone;

  IRzoneSub* zoneSub_ptr_ = nullptr;
  IRretentionmodel* retentionmodel_ptr_ = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
