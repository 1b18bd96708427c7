#pragma once

#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRzoneSub;

/// The block `GEOMETRY` of a subsurface region.
class IRgeomSub : public SchemaBlock<IRgeomSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::vector<double> ref_coordinates;
  std::vector<double> base_vector_i;
  std::vector<double> base_vector_j;
  double cell_size = 0;  ///< [m]
  int no_cells_i = 0;    ///< [-]
  int no_cells_j = 0;    ///< [-]
  int no_cells_k = 0;    ///< [-]

  std::vector<IRzoneSub*> zones_ptrV;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;

 private:
  void checkZones();
};

}  // namespace KESTparse
