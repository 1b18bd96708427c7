#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER` under `SUSPENDED_LOAD` of a 1D region.
class IRsuspparam1d : public SchemaBlock<IRsuspparam1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string local_slope;
  std::string scheme;
  double diffusion_factor = 0;  ///< [-]
  double diffusion_factor_dynamic = 0;
  std::string sediment_exchange;
  std::string use_transport_type_factor;
  std::string transport_type_factor;
  double pickup_factor = 0;
  std::string sink_velocity_type;
  std::vector<double> settling_velocities;  ///< [mm/s]
  std::string exchange_type;
  std::string concentration_type;
  double factor_for_near_bed_concentration = 0;
  double factor_depth_reference_height = 0;
  double factor_m = 0;
  double factor_n = 0;
  double tk = 0;
  double shape_factor = 0;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
