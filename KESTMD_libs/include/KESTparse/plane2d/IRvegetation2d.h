#pragma once

#include <memory>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRvegBiomass2d;
class IRvegFeedback2d;
class IRvegGroundwater2d;
class IRvegParameter2d;
class IRvegic2d;

/// The block `VEGETATION` of a 2D region.
class IRvegetation2d : public SchemaBlock<IRvegetation2d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;
  /// Takes in a child of any name; one that the schema has not is filed nowhere.
  InputBlock& addBlock(std::unique_ptr<InputBlock> child) override;
  /// An assertion for PARAMETER and FEEDBACK, which stay where they are once they are there.
  void removeBlock(InputBlock& child) override;

  IRvegGroundwater2d* vegGroundwater_ptr = nullptr;
  IRvegFeedback2d* vegFeedback_prt = nullptr;
  IRvegBiomass2d* vegBiomass_ptr = nullptr;
  IRvegParameter2d* vegParameter_ptr = nullptr;
  IRvegic2d* vegic_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
