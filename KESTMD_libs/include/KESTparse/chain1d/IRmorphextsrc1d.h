#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `EXTERNAL_SOURCE` under `SOURCE` of a 1D region.
class IRmorphextsrc1d : public SchemaBlock<IRmorphextsrc1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::string mixture;
  std::vector<int> grain_classes;
  std::string cross_section;
  double dredge_level = 0;           ///< [m.a.s.l]
  double dredge_trigger_height = 0;  ///< [m]
  double maximum_dredge_rate = 0;    ///< [m3/s]
  std::string erode_below_fixed_bed;
  std::string print_volumes;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
