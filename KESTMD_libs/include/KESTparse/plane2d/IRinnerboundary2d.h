#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INNER_BOUNDARY` under `HYDRAULICS` of a 2D region.
class IRinnerboundary2d : public SchemaBlock<IRinnerboundary2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string string_name1;
  std::string string_name2;
  std::string file;
  Kestrix::Table file_table;   ///< the rows of that file
  double my = 0;               ///< [-]
  double momentum_factor = 0;  ///< [-]

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
