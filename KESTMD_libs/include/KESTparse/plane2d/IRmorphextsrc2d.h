#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `EXTERNAL_SOURCE` under `SOURCE` of a 2D region.
class IRmorphextsrc2d : public SchemaBlock<IRmorphextsrc2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::string mixture;
  std::vector<int> node_ids;
  std::vector<int> elem_ids;
  std::vector<int> index;
  std::vector<int> dredge_node_ids_redist;
  std::vector<int> dredge_elem_ids_redist;
  double dredge_level_absolute = 0;   ///< [m.a.s.l]
  double dredge_height_relative = 0;  ///< [m]
  double dredge_trigger_height = 0;   ///< [m]
  double dredge_rate_max = 0;         ///< [m3/s]

  bool dredge_level_is_absolute = false;  ///< set by validation: which of the two levels holds

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
