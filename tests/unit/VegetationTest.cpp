#include <gtest/gtest.h>

#include "KESTparse/plane2d/IRvegetation2d.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace KESTparse {
namespace {

/// A region with vegetation, whose bookkeeping of sub-blocks has quirks of its own.
class VegetationTest : public testing::Test {
 protected:
  static InputBlock& add(InputBlock& parent, std::string_view name) {
    return parent.getBlock(name, nullptr, 1);
  }

  KestrixInputRoot root_;
  InputBlock& domain_ = add(root_, "DOMAIN");
  IRvegetation2d& vegetation_ =
      dynamic_cast<IRvegetation2d&>(add(add(domain_, "KESTPLANE_2D"), "VEGETATION"));
};

TEST_F(VegetationTest, twoSubBlocksCannotBeRemoved) {
  vegetation_.removeBlock(add(vegetation_, "GROUNDWATER"));
  EXPECT_EQ(vegetation_.vegGroundwater_ptr, nullptr);
  vegetation_.removeBlock(add(vegetation_, "BIOMASS"));
  EXPECT_EQ(vegetation_.vegBiomass_ptr, nullptr);
  vegetation_.removeBlock(add(vegetation_, "INITIAL"));
  EXPECT_EQ(vegetation_.vegic_ptr, nullptr);
  EXPECT_EQ(vegetation_.getNumBlocks(), 0U);
  EXPECT_DEATH(vegetation_.removeBlock(add(vegetation_, "PARAMETER")), "unknown block, in file");
  EXPECT_DEATH(vegetation_.removeBlock(add(vegetation_, "FEEDBACK")), "unknown block, in file");
}

TEST_F(VegetationTest, aBlockOfAnotherNameIsTakenIn) {
  const int position = domain_.getLogicalBlockPosition("PARALLEL");
  const InputBlock& master =
      domain_.getLogicalMaster()->getLogicalBlock(static_cast<std::size_t>(position));
  InputBlock& foreign = vegetation_.addBlock(master.logicalClone(nullptr));
  EXPECT_EQ(&vegetation_.getBlock(0), &foreign);
  EXPECT_EQ(foreign.getActualParent(), &vegetation_);
  EXPECT_DEATH(vegetation_.removeBlock(foreign), "unknown block, in file");
}

}  // namespace
}  // namespace KESTparse
