#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BOUNDARY` under `SUSPENDED_LOAD` of a 1D region.
class IRsuspbndr1d : public SchemaBlock<IRsuspbndr1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string string;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::string mixture;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
