#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `DIRECTION` under `BEDLOAD` of a 2D region.
class IRbedloadDirection : public SchemaBlock<IRbedloadDirection> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string lateral_transport_type;
  std::vector<int> lateral_index;
  std::string radius_calculation_type;
  std::vector<double> radius_static;    ///< [m]
  double lateral_transport_factor = 0;  ///< [-]
  std::string curvature_transport_factor_type;
  double curvature_transport_factor = 0;  ///< [-]
  double dynamic_prefactor = 0;           ///< [-]
  double initial_radius = 0;              ///< [m]
  double min_abs_radius = 0;              ///< [m]
  std::string min_abs_radius_use;
  double update_timestep_radius = 0;      ///< [s]
  double lateral_transport_exponent = 0;  ///< [-]
  std::string scale_lateral_transport;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
