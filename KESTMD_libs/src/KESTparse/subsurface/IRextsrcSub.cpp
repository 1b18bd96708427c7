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

void IRextsrcSub::checkRules() {
  if (x_values.size() != y_values.size()) {
    error("Number of x- and y-values must be the same.");
  } else if (x_values.empty()) {
    error("No x- and y-values are specified.");
  }
}

}  // namespace KESTparse
