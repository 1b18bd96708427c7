#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `ZONE` under `GEOMETRY` of a subsurface region.
class IRzoneSub : public SchemaBlock<IRzoneSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string inactive;
  double ymin = 0;
  double ymax = 0;
  std::vector<double> x_values;
  std::vector<double> z_values;
  std::string mesh;
  std::string mesh_direction;
  std::vector<int> material_index;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
