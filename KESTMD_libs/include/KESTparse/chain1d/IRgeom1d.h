#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `GEOMETRY` of a 1D region.
class IRgeom1d : public SchemaBlock<IRgeom1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  std::vector<std::string> cross_section_order;
  bool dump_crosssections = false;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
