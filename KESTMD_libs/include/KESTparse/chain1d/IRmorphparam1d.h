#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER` under `MORPHOLOGY` of a 1D region.
class IRmorphparam1d : public SchemaBlock<IRmorphparam1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double porosity = 0;  ///< [%]
  double wetting_fraction = 0;
  double density = 0;  ///< [kg/m3]
  std::string control_volume_type;
  double control_volume_thickness = 0;  ///< [m]
  double control_volume_factor = 0;     ///< [-]
  double max_dz_table = 0;              ///< [m]
  std::string create_new_layers;
  double max_layer_thickness = 0;  ///< [m]
  double min_theta_critic = 0;

 protected:
  void createTags() override;
  void checkRulesAlways() override;
};

}  // namespace KESTparse
