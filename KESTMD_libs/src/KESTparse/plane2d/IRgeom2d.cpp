#include "KESTparse/plane2d/IRgeom2d.h"

#include <algorithm>

#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRgeombc2d.h"
#include "KESTparse/plane2d/IRstringdef2d.h"

namespace KESTparse {

void IRgeom2d::getDescription(std::ostream& out) const {
  out << "Defines the topography for this 2D-simulation. The type of input format and the name of the geometry input file have to be specified.";
}

void IRgeom2d::createSubBlocks() {
  subBlock<&Self::stringdef_ptrV>("STRINGDEF").repeatable();
  subBlock<&Self::geombc_ptr>("MOVABLE_BED");
}

void IRgeom2d::createTags() {
  text<&Self::type>(
      "The only supported file type for 2D-grids is '2dm' at the moment. This requires a file with the .2dm-format.")
      .mandatory()
      .preset("undefined")
      .oneOf({"2dm"});
  fileName<&Self::file>("Filename of the gridfile.").mandatory().preset("undefined.xxx");
}

void IRgeom2d::getLongDescription(std::ostream& out) const {
  out << "GEOMETRY {\n  type = sms\n  file = grid.2dm\n  STRINGDEF {\n    name = inflow\n    upstream_direction = right\n  }\n}\n";
}

const IRstringdef2d* IRgeom2d::findString(std::string_view name) const {
  const NameIndex::Places places = strings_.find(name, stringdef_ptrV, &IRstringdef2d::name);
  return places.count == 0 ? nullptr : stringdef_ptrV[places.last];
}

void IRgeom2d::checkRules() {
  const std::string path = resolvePath(file);
  if (!canOpen(path)) {
    error<&Self::file>(
        {"missing-file", "the mesh file '{1}' does not exist or cannot be opened",
         "name in 'file' the mesh (.2dm), with its folder"},
        "Gridfile (.2dm) '{}' cannot be opened, please check your input. Note: Relative path can be inserted manually, e.g. ../gridFolder/grid.2dm (not over the 'load file' botton).",
        path, file);
  }
  for (const auto& [i, j] : equalPairs(stringdef_ptrV, &IRstringdef2d::name)) {
    report(
        Severity::error, *this,
        {about<&IRstringdef2d::name>(*stringdef_ptrV[j]),
         about<&IRstringdef2d::name>(*stringdef_ptrV[i])},
        {"second-name", "two STRINGDEF blocks have the name '{0}'",
         "give each STRINGDEF a 'name' of its own"},
        "Two string definitions in STRINGDEF blocks share the same name: '{}' Every string definition should have a unique name.",
        stringdef_ptrV[i]->name);
  }
}

void IRgeom2d::checkInnerBoundary(InputBlock& boundary, const std::string& boundaryType,
                                  const Subject& side1, const std::string& string_name1,
                                  const Subject& side2, const std::string& string_name2) const {
  const auto require = [this, &boundary](const Subject& side, const std::string& name) {
    const IRstringdef2d* const string = findString(name);
    if (string == nullptr) {
      reportUnknownSide(boundary, side, name, perhaps(name, stringdef_ptrV, &IRstringdef2d::name),
                        {"unknown-string", "there is no STRINGDEF named '{0}' in this region",
                         "name one of the STRINGDEF blocks in GEOMETRY{1}, or define '{0}' there"});
    }
    return string;
  };
  const IRstringdef2d* const string1 = require(side1, string_name1);
  const IRstringdef2d* const string2 = require(side2, string_name2);
  if (string1 != nullptr && string2 != nullptr &&
      string1->string_nodes.size() != string2->string_nodes.size()) {
    report(
        Severity::error, boundary, {side1, side2},
        {"node-count",
         "the two strings of the inner boundary differ in their numbers of nodes: {2} in '{1}', {4} in '{3}'",
         "give the two node strings as many nodes in the mesh"},
        "The two cross_strings for an inner boundary of type '{}' do not have the same number of nodes! Both STRINGDEF's need an equal number of nodes for this inner boundary condition.",
        boundaryType, string_name1, string1->string_nodes.size(), string_name2,
        string2->string_nodes.size());
  }
}

}  // namespace KESTparse
