#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/Derived.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRgeombc2d;
class IRstringdef2d;

/// The block `GEOMETRY` of a 2D region.
class IRgeom2d : public SchemaBlock<IRgeom2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;

  std::vector<IRstringdef2d*> stringdef_ptrV;
  IRgeombc2d* geombc_ptr = nullptr;

  void getLongDescription(std::ostream& out) const override;

  /// The last string of that name; null when there is none.
  [[nodiscard]] const IRstringdef2d* findString(std::string_view name) const;

  /// Checks that `boundary`, an inner boundary between two strings, names two that exist and have
  /// as many nodes. As long as the strings are not validated, both have none.
  void checkInnerBoundary(InputBlock& boundary, const std::string& boundaryType,
                          const Subject& side1, const std::string& string_name1,
                          const Subject& side2, const std::string& string_name2) const;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;

 private:
  NameIndex strings_;
};

}  // namespace KESTparse
