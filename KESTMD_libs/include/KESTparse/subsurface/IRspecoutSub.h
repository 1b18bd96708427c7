#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `SPECIAL_OUTPUT` under `OUTPUT` of a subsurface region.
class IRspecoutSub : public SchemaBlock<IRspecoutSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  double output_time_step = 0;  ///< [s]
  std::vector<std::string> values;
  std::string format;
  std::string cut_plane;
  double cut_plane_position = 0;
  double cut_line_position_z = 0;
  double cut_line_position_y = 0;
  double cut_line_position_x = 0;
  double cut_z_position = 0;

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  void checkCutLine();
};

}  // namespace KESTparse
