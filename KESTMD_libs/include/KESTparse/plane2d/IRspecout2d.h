#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `SPECIAL_OUTPUT` under `OUTPUT` of a 2D region.
class IRspecout2d : public SchemaBlock<IRspecout2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  double output_time_step = 0;  ///< [s]
  std::vector<std::string> values;
  std::string format;
  bool ids_instead_coords = false;
  bool split_file = false;
  int flush_all_num_steps = 0;  ///< output steps
  bool history_one_file = false;
  std::vector<int> element_ids;
  std::vector<std::string> element_values;
  std::vector<int> node_ids;
  std::vector<std::string> node_values;
  std::vector<std::string> stringdefs;
  std::vector<std::string> stringdef_values;
  std::vector<std::string> edge_ids;
  std::vector<std::string> edge_values;
  std::vector<std::string> boundary_values;
  std::vector<std::string> balance_values;
  std::string variable;
  std::string wse3D;
  std::string vectors;
  std::string gridlines;
  double vectors_scaling_factor = 0;
  double write_jpeg_image_time = 0;
  std::vector<double> value_range;
  std::string KESTextern;
  std::vector<int> ids;
  double threshold_wse = 0;

  bool has_value_range = false;  ///< `value_range` was given; set by the validation

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  void checkSaturation();
  void checkAllDependencies();
  /// Reports the items of `list`, the value of `tag`, that the transport of the region cannot give.
  void checkOutputDependencies(const std::vector<std::string>& list, const Subject& tag,
                               const std::vector<std::string>& valid_values,
                               const std::vector<std::uint32_t>& dependencies);
  /// Reports the output `value`, an `item` of a list, unless the region gives what it depends on.
  void checkOutputDependency(const Subject& item, std::string_view value, std::uint32_t dependency);
};

}  // namespace KESTparse
