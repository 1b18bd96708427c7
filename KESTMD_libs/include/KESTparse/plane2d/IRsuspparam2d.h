#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER` under `SUSPENDED_LOAD` of a 2D region.
class IRsuspparam2d : public SchemaBlock<IRsuspparam2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string scheme;
  std::string diffusion;
  double diffusion_factor = 0;
  double diffusion_factor_dynamic = 0;
  std::string sediment_exchange;
  std::string use_transport_type_factor;
  std::string transport_type_factor;
  int number_susp_fractions = 0;
  std::vector<double> pickup_factors;
  double factor_depth_reference_height = 0;
  double adaption_length_factor = 0;
  std::string sink_velocity_type;
  std::vector<double> settling_velocities;  ///< [mm/s]
  double corey_shape_factor = 0;
  std::string concentration_type;
  std::string limit_pickup_to_bedload;
  std::string theta_critical_from_bedload;
  std::string local_slope_correction;
  std::string exchange_type;
  double factor_m = 0;
  double factor_n = 0;
  double tk = 0;
  std::string shear_stress_deposition_conc;
  double ref_conc_factor = 0;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
