#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `EXTERNAL_SOURCE` under `SOURCE` of a 1D region.
class IRsuspextsrc1d : public SchemaBlock<IRsuspextsrc1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::string mixture;
  std::string cross_section;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
