#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BOUNDARY` of a subsurface region.
class IRbndrSub : public SchemaBlock<IRbndrSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string face;
  std::vector<double> from_to1;
  std::vector<double> from_to2;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  double depth_min = 0;       ///< [-]
  double z_reduction = 0;     ///< [-]
  std::vector<int> material_index;
  std::string name;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
