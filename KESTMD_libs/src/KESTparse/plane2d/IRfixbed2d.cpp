#include "KESTparse/plane2d/IRfixbed2d.h"

#include "KESTparse/base/GlobalValues.h"

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

void IRfixbed2d::checkRules() {
  if (node_ids.size() != zb_fix.size()) {
    error<&Self::zb_fix, &Self::node_ids>(
        {"node-count",
         "the number of levels in 'zb_fix' ({1}) is not that of the nodes in 'node_ids' ({0})",
         "give one level in m a.s.l. for each node, in the same order"},
        "'node_ids' and 'zb_fix' have not the same number of entries in FIXED_BED block. Make sure, every index has a value for zb_fix assigned when using 'nodes' as input_type.",
        node_ids.size(), zb_fix.size());
  }
  if (type == "meshfile") {
    const std::string path = resolvePath(file);
    if (!canOpen(path)) {
      error<&Self::file>(
          {"missing-file",
           "the mesh file '{1}' of the fixed bed does not exist or cannot be opened",
           "name in 'file' the mesh with the levels of the fixed bed, with its folder"},
          "meshfile file '{}' does not exist. Please give a valid file name for the meshfile file. Note: Relative path can be inserted manually, e.g. ../gridFolder/grid.2dm (not over the 'load file' botton).",
          path, file);
    }
  }
}

}  // namespace KESTparse
