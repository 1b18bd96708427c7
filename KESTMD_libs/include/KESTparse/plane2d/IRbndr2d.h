#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BOUNDARY` under `HYDRAULICS` of a 2D region.
class IRbndr2d : public SchemaBlock<IRbndr2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string string_name;
  std::string type;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  double my = 0;              ///< [-]
  double slope = 0;           ///< as a fraction
  double max_interval = 0;    ///< [m]
  int number_of_iterations = 0;
  std::string weighting_type;
  bool wall_flux = false;
  bool inflow_possible = false;
  bool zero_velocity = false;
  bool dynamic_slope = false;
  double dynamic_slope_xref = 0;  ///< [m]
  double precision = 0;           ///< [m]
  std::string wse_calc_method;
  std::string conveyance_type;

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  void checkHqrelation();
  [[nodiscard]] bool hasNoFile() const;
};

}  // namespace KESTparse
