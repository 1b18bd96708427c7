#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INITIAL` of a subsurface region.
class IRicSub : public SchemaBlock<IRicSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  double restart_start_time = 0;  ///< [s]
  double value = 0;               ///< [-/m]

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
