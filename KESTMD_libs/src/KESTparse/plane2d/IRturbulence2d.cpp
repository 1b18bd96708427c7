#include "KESTparse/plane2d/IRturbulence2d.h"

namespace KESTparse {

void IRturbulence2d::getDescription(std::ostream& out) const {
  out << "This block handles everything related to inner viscous friction and turbulence.";
}

void IRturbulence2d::createTags() {
  text<&Self::type>(
      "This is the choice of the turbulence model type. Currently, the only option is 'algebraic'.")
      .mandatory()
      .preset("undefined")
      .oneOf({"algebraic"});
  real<&Self::kinematic_viscosity>(
      "The kinematic viscosity is a property of a fluid and characterizes the losses du to inner friction.")
      .defaultsTo("0.000001307")
      .preset("-1.0")
      .unit("[m2/s]")
      .atLeast(0);
  text<&Self::eddy_viscosity_type>("This is the choice of the turbulent eddy viscosity type.")
      .defaultsTo("dynamic")
      .preset("undefined")
      .oneOf({"dynamic", "constant"});
  real<&Self::eddy_viscosity>(
      "The turbulent viscosity to be used throughout the computational grid.")
      .mandatory()
      .preset("-1.0")
      .unit("[m2/s]")
      .atLeast(0)
      .requiredIf("eddy_viscosity_type", {"constant"});
  real<&Self::turbulence_factor>(
      "This factor amplifies the effect of dynamic eddy viscosity. This can be useful when slow velocities lead to small dynamic eddy viscoities. Usual values are around 1 to 5.")
      .defaultsTo("1")
      .preset("-1.0")
      .unit("[-]")
      .usedIf("eddy_viscosity_type", {"dynamic"});
  text<&Self::boundary_gradient>(
      "To calculate the velocity gradients in boundary elements, two methods can be chosen")
      .defaultsTo("zerogradient")
      .oneOf({"zerogradient", "zerovelocity"});
}

}  // namespace KESTparse
