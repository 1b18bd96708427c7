#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `GRAVITATIONAL_TRANSPORT` under `MORPHOLOGY` of a 2D region.
class IRGravitationalTransport : public SchemaBlock<IRGravitationalTransport> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<int> index;
  std::vector<double> angle_failure_dry;
  std::vector<double> angle_failure_wetted;
  std::vector<double> angle_failure_deposited;
  std::string gravity_transport_on_cells;
  double max_delta_z = 0;  ///< [m]
  int cycle_step = 0;
  double min_changed_volume = 0;  ///< [m3]
  int max_iterations = 0;
  std::string angle_wetted_criterion;
  std::string only_subsurface_angle;
  std::string check_hydrostatic_stabilization;
  double stabilization_height = 0;  ///< [m]

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
