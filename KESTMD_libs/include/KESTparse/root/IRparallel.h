#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARALLEL`.
class IRparallel : public SchemaBlock<IRparallel> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  int number_threads = 0;
  void getExample(std::ostream& out) const override;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
