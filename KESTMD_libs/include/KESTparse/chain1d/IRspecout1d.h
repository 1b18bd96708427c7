#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `SPECIAL_OUTPUT` under `OUTPUT` of a 1D region.
class IRspecout1d : public SchemaBlock<IRspecout1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  double output_time_step = 0;  ///< [s]
  std::vector<std::string> cross_sections;
  std::vector<std::string> A;
  std::vector<std::string> b;
  std::vector<std::string> Q;
  std::vector<std::string> Qb;
  std::vector<std::string> TC;
  std::vector<std::string> GT;
  std::vector<std::string> wse;
  std::vector<std::string> energy_line;
  std::vector<std::string> v;
  std::vector<std::string> c;
  std::vector<std::string> F;
  std::vector<std::string> h;
  std::string variable;
  bool show_gridlines = false;
  double write_jpeg_image_time = 0;
  std::string KESTextern;
  bool output_single_file = false;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
