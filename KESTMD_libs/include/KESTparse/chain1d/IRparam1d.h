#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRsect_comp1d;

/// The block `PARAMETER` under `HYDRAULICS` of a 1D region.
class IRparam1d : public SchemaBlock<IRparam1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  double minimum_water_depth = 0;  ///< [m]
  bool stretch_boundary_elem = false;
  std::string riemann_solver;
  std::string simulation_scheme;

  IRsect_comp1d* sect_comp_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRulesAlways() override;
};

}  // namespace KESTparse
