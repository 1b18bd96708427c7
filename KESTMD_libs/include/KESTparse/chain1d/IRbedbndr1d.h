#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BOUNDARY` under `BEDLOAD` of a 1D region.
class IRbedbndr1d : public SchemaBlock<IRbedbndr1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string string;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::string multiFile;
  Kestrix::Table multiFile_table;  ///< the rows of that file
  std::string mixture;
  double factor = 0;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
