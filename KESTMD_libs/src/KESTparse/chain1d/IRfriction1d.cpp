#include "KESTparse/chain1d/IRfriction1d.h"

#include "KESTparse/framework/InputTag.h"

namespace KESTparse {

void IRfriction1d::getDescription(std::ostream& out) const {
  out << "The block deals with all influences on the source term in the equations concerning the friction.";
}

void IRfriction1d::createTags() {
  text<&Self::type>(
      "Friction laws: 'strickler' for Strickler values, 'manning' for Manning values. No other friction laws are available for 1D at the moment.")
      .defaultsTo("strickler")
      .preset("undefined")
      .oneOf({"strickler", "manning"});
  real<&Self::default_friction>(
      "The default friction is used for all elements where no explicit friction value has been supplied.")
      .mandatory()
      .preset("-1.0")
      .atLeast(0);
  boolean<&Self::grain_size_friction>(
      "This option activates the calculation of the bed friction using the grain size.")
      .defaultsTo("no")
      .preset("false");
  real<&Self::strickler_factor>(
      "Factor for the computation of the friction value from the grain diameter: Kstr = strickler_factor/(d90^1/6).")
      .defaultsTo("21.1")
      .above(0)
      .usedIf("grain_size_friction", {"no"});
  real<&Self::roughness_factor>(
      "Factor for the computation of the friction value from the grain diameter: ks = roughness_factor * d90.Default is 3.0.")
      .defaultsTo("3.0")
      .above(0)
      .usedIf("grain_size_friction", {"no"});
}

void IRfriction1d::checkRules() {
  if (!hasTag("grain_size_friction")) {
    return;
  }
  const InputBlock* const geometry = getBlockByPath("../../GEOMETRY");
  if (geometry != nullptr && geometry->hasTag("type") &&
      geometry->getTag("type", 0).getRawValue() == "varlen") {
    warning<&Self::grain_size_friction>(
        {"friction-overridden",
         "the friction of a topography file of type 'varlen' counts instead of this one",
         "give the friction in the topography file, or convert that to the 'kestrix' format"},
        "You are using 'varlen' as the geometry input file format. Note that any friction defined therein will override your friction settings in the basic command file. ");
  }
  if (grain_size_friction && getBlockByPath("../../MORPHOLOGY/BEDMATERIAL") == nullptr) {
    error<&Self::grain_size_friction>(
        {"no-bed-material",
         "friction from the grain size needs the bed material of the region, which has none",
         "add the block MORPHOLOGY with its BEDMATERIAL, or set 'grain_size_friction = no'"},
        "Tag 'grain_size_friction' = 'yes' requires block '../../MORPHOLOGY/BEDMATERIAL'");
  }
}

}  // namespace KESTparse
