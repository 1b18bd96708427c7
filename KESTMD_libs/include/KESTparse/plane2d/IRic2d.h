#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INITIAL` under `HYDRAULICS` of a 2D region.
class IRic2d : public SchemaBlock<IRic2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  double restart_solution_time = 0;  ///< [s]
  std::vector<int> index;
  std::vector<double> u;    ///< [m/s]
  std::vector<double> v;    ///< [m/s]
  std::vector<double> wse;  ///< [m]
  std::vector<double> h;    ///< [m]
  std::vector<double> saturations_lower_upper;
  std::vector<double> saturations_z_lower_upper;

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  void checkIndexTable();
};

}  // namespace KESTparse
