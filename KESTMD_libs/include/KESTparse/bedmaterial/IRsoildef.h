#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRbedmat;
class IRsublayer;

/// The block `SOIL_DEF` under `BEDMATERIAL`.
class IRsoildef : public SchemaBlock<IRsoildef> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  double d90_armored_layer = 0;  ///< [mm]
  double tau_erosion_start = 0;  ///< [N/m2]

  std::vector<IRsublayer*> sublay_ptrV;

  std::string dimension;  ///< of the bed material: "1D" or "2D"

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void initialise() override;
  void checkRules() override;

 private:
  /// The bed material that the soil belongs to.
  [[nodiscard]] const IRbedmat& material() const;
  void reportNoDiameters();
  void checkSingleGrain();
  void checkMultiGrain();
};

}  // namespace KESTparse
