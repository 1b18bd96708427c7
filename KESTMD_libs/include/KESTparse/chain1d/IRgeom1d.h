#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/Derived.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `GEOMETRY` of a 1D region.
class IRgeom1d : public SchemaBlock<IRgeom1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string file;
  std::vector<std::string> cross_section_order;
  bool dump_crosssections = false;

  /// Place of the first cross section of that name in the order; -1 when there is none.
  [[nodiscard]] int crossSectionIndex(std::string_view name) const;
  /// Where the cross sections of that name stand in the order.
  [[nodiscard]] NameIndex::Places crossSections(std::string_view name) const;
  /// Reports to `source` a cross section that the order has not. It is about the tag that names it,
  /// and what demands that.
  void requireCrossSection(InputBlock& source, std::initializer_list<Subject> tagAndDemand,
                           const std::string& name) const;

 protected:
  void createTags() override;
  void checkRulesAlways() override;

 private:
  NameIndex crossSections_;
};

}  // namespace KESTparse
