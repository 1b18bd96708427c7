#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `TURBULENCE_MODEL` under `HYDRAULICS` of a 2D region.
class IRturbulence2d : public SchemaBlock<IRturbulence2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  double kinematic_viscosity = 0;  ///< [m2/s]
  std::string eddy_viscosity_type;
  double eddy_viscosity = 0;     ///< [m2/s]
  double turbulence_factor = 0;  ///< [-]
  std::string boundary_gradient;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
