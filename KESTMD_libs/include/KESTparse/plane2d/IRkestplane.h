#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRgeom2d;
class IRhydr2d;
class IRmorph2d;
class IRoutput2d;
class IRtimestep2d;
class IRvegetation2d;

/// The block `KESTPLANE_2D`.
class IRkestplane : public SchemaBlock<IRkestplane> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string region_name;

  IRgeom2d* geom_ptr = nullptr;
  IRhydr2d* hydr_ptr = nullptr;
  IRmorph2d* morph_ptr = nullptr;
  IRtimestep2d* timestep_ptr = nullptr;
  IRoutput2d* out_ptr = nullptr;
  IRvegetation2d* veg_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
