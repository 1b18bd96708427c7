#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The blocks `HYDRAULICS`, `BEDLOAD`, `SUSPENSION` and `SUBSURFACE` of a coupling.
class IRcouplingsub : public SchemaBlock<IRcouplingsub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string upstream_interface;
  std::string downstream_interface;
  std::string upstream_interface1;
  std::string upstream_interface2;
  std::string downstream_interface1;
  std::string downstream_interface2;
  std::string external_interface;
  std::string kestrix_interface;

 protected:
  void createTags() override;
};

}  // namespace KESTparse
