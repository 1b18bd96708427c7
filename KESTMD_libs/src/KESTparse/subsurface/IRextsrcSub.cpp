#include "KESTparse/subsurface/IRextsrcSub.h"

namespace KESTparse {

void IRextsrcSub::getDescription(std::ostream& out) const {
  out << "The external source block is used for additional sources to model inflow or outtake of water without using a boundary condition.";
}

void IRextsrcSub::createTags() {
  real<&Self::value>("").mandatory().preset("0.0").unit("[m2/s]").atLeast(0);
  reals<&Self::x_values>("").mandatory();
  reals<&Self::y_values>("").mandatory();
}

}  // namespace KESTparse
