#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BOUNDARY` under `BEDLOAD` of a 2D region.
class IRbedbndr2d : public SchemaBlock<IRbedbndr2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string string_name;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::string mixture;
  double factor = 0;
  double fraction_boundary = 0;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
