#include "KESTparse/plane2d/IRfixbed2d.h"

namespace KESTparse {

void IRfixbed2d::getDescription(std::ostream& out) const {
  out << "The fixed bed level is the elevation where no more erosion is possible (unerodable rock). Usually, the fixed bed level is determined automatically as the lowest elevation of all soil layers. In most cases, therefore no FIXED_BED block is needed at all.";
}

void IRfixbed2d::createTags() {
  text<&Self::type>(
      "This is the type of Input for the fixed bed elevation. The two possibilities are input from file ('meshfile') or by a list of nodes ('nodes').")
      .mandatory()
      .preset("undefinedType")
      .oneOf({"meshfile", "nodes"});
  fileName<&Self::file>(
      "This is the name of a grid file containing the fixed bed levels as topography.")
      .mandatory()
      .preset("UnnamedFixedBedFile")
      .requiredIf("type", {"meshfile"});
  integers<&Self::node_ids>("This is a list of nodes which are not adjacent.")
      .mandatory()
      .requiredIf("type", {"nodes"});
  reals<&Self::zb_fix>(
      "This is a list of fixed bed values in [m] above sea level. If a fixed bed value is ≤ -100, then the surface bed elevation is used.")
      .mandatory()
      .requiredIf("type", {"nodes"});
}

}  // namespace KESTparse
