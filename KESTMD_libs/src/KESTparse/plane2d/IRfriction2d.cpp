#include "KESTparse/plane2d/IRfriction2d.h"

#include "KESTparse/framework/ListRules.h"
#include "KESTparse/plane2d/IRkestplane.h"
#include "KESTparse/plane2d/IRmorph2d.h"

namespace KESTparse {

void IRfriction2d::getDescription(std::ostream& out) const {
  out << "The FRICTION block defines everything that is related to the Friction term of the Shallow water equations. Friction values are often used to calibrate a numerical model.";
}

void IRfriction2d::createTags() {
  text<&Self::type>("The desired friction law must be specified.")
      .mandatory()
      .preset("undefined")
      .oneOf({"manning", "strickler", "chezy", "darcy", "yalin", "bezzola"});
  real<&Self::default_friction>(
      "This is the default friction coefficient used for all elements where no friction is defined.")
      .mandatory()
      .preset("-1.0")
      .unit("[s/m^(1/3)] Manning, [m^(1/3)/s] Strickler, [m] equivalent sand roughness.")
      .atLeast(0);
  text<&Self::input_type>(
      "When different friction values for distinct areas in the mesh are needed, the technique of the material index has to be used.")
      .preset("undefined")
      .oneOf({"index_table"});
  integers<&Self::index>(
      "This tag expects a list with all the material indices (integer numbers) used.")
      .mandatory()
      .requiredIf("input_type", {"index_table"});
  reals<&Self::friction>(
      "This tag expects a list with friction coefficients corresponding to the material indices.")
      .mandatory()
      .requiredIf("input_type", {"index_table"});
  text<&Self::wall_friction>(
      "Enables or disables wall friction at boundary conditions using walls. By default, wall friction is activated.")
      .mandatory()
      .preset("undefined")
      .oneOf({"on", "off"});
  real<&Self::wall_friction_factor>(
      "This is the friction coefficient for side wall friction. If this parameter is not specified, the same friction values as for the bed are used.")
      .preset("-1.0")
      .above(0)
      .usedIf("wall_friction", {"on"});
  text<&Self::grain_size_friction>(
      "This option activates the calculation of the bed friction using the grain size.")
      .defaultsTo("no")
      .oneOf({"no", "yes"});
  real<&Self::strickler_factor>(
      "This is the factor for the computation of the friction value from the grain diameter")
      .defaultsTo("21.1")
      .above(0)
      .usedIf("grain_size_friction", {"yes"});
  real<&Self::fixed_bed_d90>("This parameter is only needed if 'grain_size_friction' is active.")
      .defaultsTo("10.0")
      .unit("[mm]")
      .above(0)
      .usedIf("grain_size_friction", {"yes"});
  real<&Self::roughness_factor>(
      "This is the factor for the computation of the friction value from the grain diameter: ks = d90*roughness_factor. By default, it is set to 3.")
      .defaultsTo("3.0")
      .above(0)
      .usedIf("grain_size_friction", {"yes"});
}

void IRfriction2d::checkRules() {
  const IRmorph2d* const morphology = enclosing<IRkestplane>().morph_ptr;
  if (grain_size_friction == "yes" &&
      (morphology == nullptr || morphology->bedmat_ptr == nullptr)) {
    error<&Self::grain_size_friction>(
        {"no-bed-material",
         "the friction shall follow from the grain size, but the region has no bed material",
         "describe the bed in MORPHOLOGY with a BEDMATERIAL block, or set 'grain_size_friction = no'"},
        "It is not allowed to set grain_size_friction to \"on\" if no bed material is defined.");
  }
  if ((input_type.empty() || input_type == "undefined") && (!index.empty() || !friction.empty())) {
    warning<&Self::index, &Self::friction>(
        {"unused-lists", "'index' and 'friction' have no effect, since 'input_type' is not given",
         "add 'input_type = index_table', or remove both lists"},
        "You have defined values for the 'index' or 'friction' tags. But these values will never be used because the 'input_type' is not set to 'index_table' !");
  }
  if (index.size() != friction.size()) {
    reportIndexCount<&Self::friction, &Self::index>(
        *this,
        "For each index defined in the tag 'index' a friction value has to be defined in the tag 'friction'.");
  }
}

}  // namespace KESTparse
