#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER` under `MORPHOLOGY` of a 2D region.
class IRmorphparam2d : public SchemaBlock<IRmorphparam2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double porosity = 0;  ///< [%]
  double density = 0;   ///< [kg/m3]
  std::string control_volume_type;
  std::vector<double> control_volume_thickness;  ///< [m]
  std::vector<int> control_volume_thickness_index;
  double control_volume_factor = 0;  ///< [-]
  std::string control_volume_initial;
  std::string create_new_layers;
  double max_layer_thickness = 0;  ///< [m]
  double new_layer_factor = 0;     ///< [m]
  double min_theta_critic = 0;
  double local_slope_angle_repose = 0;  ///< [Degree]
  std::string strong_coupling;
  int strong_coupling_iter = 0;         ///< [-]
  double distortion_offset = 0;         ///< [m]
  double distortion_time_interval = 0;  ///< [s]
  std::vector<int> distortion_index;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
