#include <gtest/gtest.h>

#include <string>

#include "KESTparse/chain1d/IRbndr1d.h"
#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/chain1d/IRextsrc1d.h"
#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/chain1d/IRhydr1d.h"
#include "KESTparse/chain1d/IRinnerboundary1d.h"
#include "KESTparse/root/IRdomain.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace KESTparse {
namespace {

class Chain1dTest : public testing::Test {
 protected:
  template <class Block = InputBlock>
  static Block& add(InputBlock& parent, std::string_view name) {
    return dynamic_cast<Block&>(parent.getBlock(name, nullptr, 1));
  }
  static void set(InputBlock& block, std::string_view name, std::string_view value) {
    block.getTag(name).setRawValue(value);
  }
  static InputBlock& addNamed(InputBlock& parent, std::string_view block, std::string_view name) {
    InputBlock& added = add(parent, block);
    set(added, "name", name);
    return added;
  }
  /// The text that a lookup throws; empty when it throws none.
  template <class Lookup>
  static std::string thrownBy(Lookup lookup) {
    try {
      static_cast<void>(lookup());
    } catch (const std::string& text) {
      return text;
    }
    return {};
  }

  KestrixInputRoot root_;
  IRdomain& domain_ = add<IRdomain>(root_, "DOMAIN");
  IRcalc1d& region_ = add<IRcalc1d>(domain_, "KESTCHAIN_1D");
  IRhydr1d& hydraulics_ = add<IRhydr1d>(region_, "HYDRAULICS");
};

TEST_F(Chain1dTest, lookupsFindTheBlockOfAName) {
  const InputBlock& boundary = addNamed(hydraulics_, "BOUNDARY", "weir");
  addNamed(hydraulics_, "BOUNDARY", "Weir");
  EXPECT_EQ(hydraulics_.findBoundary("weir"), &boundary);
  EXPECT_EQ(hydraulics_.findBoundary("wei"), nullptr);

  EXPECT_EQ(hydraulics_.findExternalSource("inflow"), nullptr);
  const InputBlock& source = addNamed(add(hydraulics_, "SOURCE"), "EXTERNAL_SOURCE", "inflow");
  EXPECT_EQ(hydraulics_.findExternalSource("inflow"), &source);
}

TEST_F(Chain1dTest, lookupsRefuseANameThatIsNotUnique) {
  addNamed(hydraulics_, "BOUNDARY", "weir");
  addNamed(hydraulics_, "BOUNDARY", "weir");
  EXPECT_EQ(thrownBy([this] { return hydraulics_.findBoundary("weir"); }),
            "The boundary named weir is not unique!");

  InputBlock& source = add(hydraulics_, "SOURCE");
  addNamed(source, "EXTERNAL_SOURCE", "inflow");
  addNamed(source, "EXTERNAL_SOURCE", "inflow");
  EXPECT_EQ(thrownBy([this] { return hydraulics_.findExternalSource("inflow"); }),
            "The source named inflow is not unique!");
}

TEST_F(Chain1dTest, boundariesWithoutANameShareTheOneThatStandsForIt) {
  const InputBlock& boundary = add(hydraulics_, "BOUNDARY");
  EXPECT_EQ(hydraulics_.findBoundary("unnamed"), &boundary);
  add(hydraulics_, "BOUNDARY");
  EXPECT_EQ(thrownBy([this] { return hydraulics_.findBoundary("unnamed"); }),
            "The boundary named unnamed is not unique!");
}

TEST_F(Chain1dTest, innerBoundariesAreFoundByNoTag) {
  auto& first = add<IRinnerboundary1d>(hydraulics_, "INNER_BOUNDARY");
  add<IRinnerboundary1d>(hydraulics_, "INNER_BOUNDARY");
  EXPECT_EQ(hydraulics_.findInnerBoundary(""), nullptr);
  first.name = "gate";
  EXPECT_EQ(hydraulics_.findInnerBoundary("gate"), &first);
  // A lookup sees a change of the tree.
  add<IRinnerboundary1d>(hydraulics_, "INNER_BOUNDARY").name = "gate";
  EXPECT_EQ(thrownBy([this] { return hydraulics_.findInnerBoundary("gate"); }),
            "The inner boundary named gate is not unique!");
}

TEST_F(Chain1dTest, theFirstCrossSectionOfANameCounts) {
  auto& geometry = add<IRgeom1d>(region_, "GEOMETRY");
  EXPECT_EQ(geometry.crossSectionIndex("a"), -1);
  set(geometry, "cross_section_order", "(a b a)");
  EXPECT_EQ(geometry.crossSectionIndex("a"), 0);
  EXPECT_EQ(geometry.crossSectionIndex("b"), 1);
  EXPECT_EQ(geometry.crossSectionIndex("B"), -1);
  EXPECT_EQ(geometry.crossSectionIndex(""), -1);
}

TEST_F(Chain1dTest, validationAsksTheControllersAnew) {
  InputBlock& controller = add(domain_, "CONTROLLER");
  InputBlock& variable = add(controller, "MANIPULATED_VARIABLE");
  set(variable, "position", "reach.weir");
  EXPECT_TRUE(domain_.isControlled("reach", "weir"));
  EXPECT_FALSE(domain_.isControlled("reach", "gate"));
  EXPECT_FALSE(domain_.isControlled("other", "weir"));
  EXPECT_FALSE(domain_.isControlled("", ""));

  domain_.removeBlock(controller);
  domain_.validate();
  EXPECT_FALSE(domain_.isControlled("reach", "weir"));
}

}  // namespace
}  // namespace KESTparse
