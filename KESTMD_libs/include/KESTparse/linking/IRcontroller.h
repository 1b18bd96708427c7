#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRctrlmanipulatedvar;
class IRctrlmonitoredvar;

/// The block `CONTROLLER`.
class IRcontroller : public SchemaBlock<IRcontroller> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  bool output = false;
  double output_time_step = 0;  ///< [s]

  std::vector<IRctrlmonitoredvar*> monitored;
  std::vector<IRctrlmanipulatedvar*> manipulated;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
