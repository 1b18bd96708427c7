#pragma once

#include <string_view>
#include <vector>

#include "KESTparse/framework/Derived.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRbndr2d;
class IRextsrc2d;
class IRfriction2d;
class IRic2d;
class IRinnerboundary2d;
class IRparam2d;
class IRsrc2d;
class IRturbulence2d;

/// The block `HYDRAULICS` of a 2D region.
class IRhydr2d : public SchemaBlock<IRhydr2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  IRparam2d* param_ptr = nullptr;
  IRfriction2d* friction_ptr = nullptr;
  std::vector<IRbndr2d*> bndr_ptrV;
  std::vector<IRinnerboundary2d*> innerbndr_ptrV;
  IRturbulence2d* turbulence_ptr = nullptr;
  IRic2d* ic_ptr = nullptr;
  IRsrc2d* src_ptr = nullptr;

  // The block of a name.

  /// The first boundary on that string. Throws a `std::string` that tells so when there is none.
  [[nodiscard]] const IRbndr2d* findBoundary(std::string_view string_name) const;
  /// The first inner boundary whose first string is that. Throws likewise.
  [[nodiscard]] const IRinnerboundary2d* findInnerBoundary(std::string_view string_name1) const;
  /// The external source of that name; null when there is none. Throws a `std::string` when the
  /// name is not unique.
  [[nodiscard]] const IRextsrc2d* findExternalSource(std::string_view name) const;
  /// Whether there is a hydrograph with a dynamic slope.
  [[nodiscard]] bool hasDynamicInflow() const;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;

 private:
  NameIndex boundaries_;
  NameIndex innerBoundaries_;
  NameIndex sources_;
  Derived<bool> hasDynamicInflow_;
};

}  // namespace KESTparse
