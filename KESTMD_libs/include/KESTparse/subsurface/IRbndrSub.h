#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `BOUNDARY` of a subsurface region.
class IRbndrSub : public SchemaBlock<IRbndrSub> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string face;
  std::vector<double> from_to1;
  std::vector<double> from_to2;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  double depth_min = 0;       ///< [-]
  double z_reduction = 0;     ///< [-]
  std::vector<int> material_index;
  std::string name;

  /// What the boundary does, in the numbers of the simulation.
  enum class Kind {
    bounce_back = 0,
    saturation = 1,
    pressure = 2,
    hydrostatic = 3,
    seepage = 4,
    zero_gradient = 5,
    coupling_kestplane = 6
  };
  Kind kind = Kind::bounce_back;  ///< set by the validation
  char faceLetter = 'n';          ///< first letter of the face; set by the validation

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  bool deriveKind();
  bool deriveFaceLetter();
};

}  // namespace KESTparse
