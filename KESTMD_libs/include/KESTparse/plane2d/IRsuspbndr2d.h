#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BOUNDARY` under `SUSPENDED_LOAD` of a 2D region.
class IRsuspbndr2d : public SchemaBlock<IRsuspbndr2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string string_name;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::string mixture;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
