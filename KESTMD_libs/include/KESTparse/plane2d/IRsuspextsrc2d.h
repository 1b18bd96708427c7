#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `EXTERNAL_SOURCE` under `SOURCE` of a 2D region.
class IRsuspextsrc2d : public SchemaBlock<IRsuspextsrc2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::string mixture;
  std::vector<int> element_ids;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
