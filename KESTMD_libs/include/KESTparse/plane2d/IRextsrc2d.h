#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `EXTERNAL_SOURCE` under `SOURCE` of a 2D region.
class IRextsrc2d : public SchemaBlock<IRextsrc2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::vector<int> element_ids;
  std::vector<int> index;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
