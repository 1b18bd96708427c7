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
    error<&Self::y_values, &Self::x_values>(
        {"point-count",
         "the lists 'x_values' and 'y_values' of the points differ in length: {0} and {1}",
         "give one x and one y coordinate for each point"},
        "Number of x- and y-values must be the same.", x_values.size(), y_values.size());
  } else if (x_values.empty()) {
    error<&Self::x_values, &Self::y_values>(
        {"no-points", "the source has no points",
         "list the coordinates of its points in 'x_values' and 'y_values'"},
        "No x- and y-values are specified.");
  }
}

}  // namespace KESTparse
