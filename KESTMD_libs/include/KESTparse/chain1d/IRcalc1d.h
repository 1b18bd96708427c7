#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRdomain;
class IRgeom1d;
class IRhydr1d;
class IRmorph1d;
class IRoutput1d;
class IRtimestep1d;

class IRcalc1d;

/// Where a block of a 1D region stands.
struct Surroundings1d {
  const IRdomain* domain;
  const IRcalc1d* calc1d;
};

/// Finds the domain and the 1D region of `block`, and reports to it what is not there.
Surroundings1d findSurroundings1d(InputBlock& block);

/// The block `KESTCHAIN_1D`.
class IRcalc1d : public SchemaBlock<IRcalc1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string region_name;

  IRgeom1d* geom_ptr = nullptr;
  IRhydr1d* hydr_ptr = nullptr;
  IRtimestep1d* timestep_ptr = nullptr;
  IRmorph1d* morph_ptr = nullptr;
  IRoutput1d* out_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
};

}  // namespace KESTparse
