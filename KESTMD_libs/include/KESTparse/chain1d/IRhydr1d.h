#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/Derived.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRbndr1d;
class IRextsrc1d;
class IRfriction1d;
class IRic1d;
class IRinnerboundary1d;
class IRparam1d;
class IRsrc1d;

/// The block `HYDRAULICS` of a 1D region.
class IRhydr1d : public SchemaBlock<IRhydr1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRparam1d* param_ptr = nullptr;
  IRfriction1d* friction_ptr = nullptr;
  std::vector<IRbndr1d*> bndr_ptrV;
  IRic1d* ic_ptr = nullptr;
  IRsrc1d* src_ptr = nullptr;
  std::vector<IRinnerboundary1d*> innerbndr_ptrV;

  // The block of a name; null when there is none. Each throws a `std::string` that tells so when
  // the name is not unique.

  [[nodiscard]] const IRbndr1d* findBoundary(const std::string& name) const;
  [[nodiscard]] const IRinnerboundary1d* findInnerBoundary(const std::string& name) const;
  [[nodiscard]] const IRextsrc1d* findExternalSource(const std::string& name) const;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;

 private:
  NameIndex boundaries_;
  NameIndex innerBoundaries_;
  NameIndex sources_;
};

}  // namespace KESTparse
