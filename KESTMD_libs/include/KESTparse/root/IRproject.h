#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PROJECT`.
class IRproject : public SchemaBlock<IRproject> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string title;
  std::string author;
  std::string date;
  double real_time_factor = 0;
  void getExample(std::ostream& out) const override;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
