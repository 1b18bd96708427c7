#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INNER_BOUNDARY` under `HYDRAULICS` of a 1D region.
class IRinnerboundary1d : public SchemaBlock<IRinnerboundary1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;  ///< set by no tag: no inner boundary is found by its name
  std::string type;
  std::string cross_section_name_1;
  std::string cross_section_name_2;
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
  std::string gate_type;
  double gate_my = 0;
  double gate_level = 0;  ///< [m rel.]
  std::string gate_level_file;
  Kestrix::Table gate_level_file_table;  ///< the rows of that file
  double gate_bottom_level = 0;          ///< [m a.s.l.]
  double gate_size = 0;                  ///< [m]
  std::string gate_size_file;
  Kestrix::Table gate_size_file_table;  ///< the rows of that file
  double contraction_factor = 0;
  std::string ehead_reference_location;
  double margin = 0;  ///< [m]
  double a1 = 0;
  double b1 = 0;
  double a2 = 0;
  double b2 = 0;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
