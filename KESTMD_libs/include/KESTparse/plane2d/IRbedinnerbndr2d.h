#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `INNER_BOUNDARY` under `BEDLOAD` of a 2D region.
class IRbedinnerbndr2d : public SchemaBlock<IRbedinnerbndr2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string string_name1;
  std::string string_name2;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
