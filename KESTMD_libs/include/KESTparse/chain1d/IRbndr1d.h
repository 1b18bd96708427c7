#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

struct Surroundings1d;

/// The block `BOUNDARY` under `HYDRAULICS` of a 1D region.
class IRbndr1d : public SchemaBlock<IRbndr1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string string;
  std::string type;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  double precision = 0;       ///< [m3/s]
  int number_of_iterations = 0;
  double slope = 0;                ///< per mill
  double zhyd_relaxation_tau = 0;  ///< m/1000m
  double max_momentum_flux = 0;
  double width = 0;  ///< [m]
  std::string width_file;
  Kestrix::Table width_file_table;  ///< the rows of that file
  double weir_level = 0;            ///< [m a.s.l.]
  std::string weir_level_file;
  Kestrix::Table weir_level_file_table;  ///< the rows of that file
  double weir_bottom_level = 0;          ///< [m a.s.l.]
  double embankement_slope = 0;
  double weir_my = 0;
  double num_piers = 0;
  double c_pier = 0;
  double c_abutments = 0;
  std::string calculation_type;
  double zweir_fac_a = 0;
  double zweir_fac_b = 0;
  double gate_level = 0;  ///< [m a.s.l.]
  std::string gate_level_file;
  Kestrix::Table gate_level_file_table;  ///< the rows of that file
  double gate_bottom_level = 0;          ///< [m a.s.l.]
  double contraction_factor = 0;

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  void checkWeirLevel(const Surroundings1d& around);
};

}  // namespace KESTparse
