#include "KESTparse/plane2d/IRvegParameter2d.h"

namespace KESTparse {

void IRvegParameter2d::getDescription(std::ostream& out) const {
  out << "The GENERAL settings for the vegetation module.";
}

void IRvegParameter2d::createTags() {
  integer<&Self::only_hydro>(
      "Input code: 1 if no MORPHOLOGY block is activated (if you run hydrodynamic simulations).0 if both HYDRAULICS and MORPHOLOGY blocks are activated.")
      .defaultsTo("0");
}

}  // namespace KESTparse
