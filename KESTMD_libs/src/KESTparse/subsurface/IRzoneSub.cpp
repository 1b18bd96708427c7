#include "KESTparse/subsurface/IRzoneSub.h"

namespace KESTparse {

void IRzoneSub::getDescription(std::ostream& out) const {
  out << "Defines a 3-D zone within the lattice of the model.";
}

void IRzoneSub::createTags() {
  text<&Self::name>(
      "Name of the zone. A zone is a part of the 3-D mesh with specific material properties.")
      .mandatory()
      .preset("unidentified");
  text<&Self::type>("The type of the zone definition. Three types are possible:default")
      .mandatory()
      .preset("unknown")
      .oneOf({"meshes", "block", "default"});
  text<&Self::inactive>(
      "This parameter defines if the cells within the zone shall be set to 'inactive'-state. If it is set to 'yes' no calculations are performed within this zone.")
      .defaultsTo("yes")
      .oneOf({"yes", "no"});
  real<&Self::ymin>(
      "Y-coordinate, which defines the extent of the block in y-direction. This is the minimum y-coordinate.")
      .mandatory()
      .preset("0.0")
      .requiredIf("type", {"block"});
  real<&Self::ymax>(
      "Y-coordinate, which defines the extent of the block in y-direction. This is the maximum y-coordinate.")
      .mandatory()
      .preset("0.0")
      .requiredIf("type", {"block"});
  reals<&Self::x_values>(
      "X-values of a polygon, which defines the block outline in the 'xz' plane.")
      .mandatory()
      .requiredIf("type", {"block"});
  reals<&Self::z_values>(
      "Z-values of a polygon, which defines the block outline in the 'xz' plane.")
      .mandatory()
      .requiredIf("type", {"block"});
  fileName<&Self::mesh>(
      "Filename of the .2dm gridfile, which describes are surface through the 3-D mesh. All cells below or above the surface can be associated with the zone.")
      .mandatory()
      .preset("undefined_upper")
      .requiredIf("type", {"meshes"});
  text<&Self::mesh_direction>(
      "This parameter specifies if the cells 'above' or 'below' the given 'mesh' (.2dm-file) are associtated with this zone.")
      .defaultsTo("above")
      .oneOf({"above", "below"})
      .requiredIf("type", {"meshes"});
  integers<&Self::material_index>(
      "From the given mesh, used for the zone definition, only the cells are used which are within the given range of material index values.")
      .requiredIf("type", {"meshes"});
  identifiedBy({"name"});
}

void IRzoneSub::checkRules() {
  if (material_index.empty()) {
    material_index.push_back(1);
  }
}

}  // namespace KESTparse
