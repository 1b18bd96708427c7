#include "KESTparse/plane2d/IRstringdef2d.h"

#include "KESTparse/base/Files.h"
#include "KESTparse/framework/Rules.h"
#include "KESTparse/plane2d/IRgeom2d.h"

namespace KESTparse {

void IRstringdef2d::getDescription(std::ostream& out) const {
  out << "List of successive nodes (with direction) defined over the domain. Used to define boundary conditions or cross section for output observation.";
}

void IRstringdef2d::createTags() {
  word<&Self::name>("Unique name for the String.").mandatory().preset("NoStringNameSpecified");
  text<&Self::upstream_direction>(
      "For this stringdef, you must define the upstream direction in order to allow for some meaningful outputs of type 'stringdef_history'. The direction is defined depending on the definition of the stringdef.")
      .mandatory()
      .oneOf({"right", "left"});
  identifiedBy({"name"});
}

void IRstringdef2d::checkRules() {
  const auto& geometry = enclosing<IRgeom2d>();
  if (geometry.type != "2dm") {
    return;
  }
  // The mesh is opened as it is named, relative to the working folder of the process.
  const NodeStrings& strings = meshNodeStrings(geometry.file);
  const auto it = strings.find(name);
  if (it == strings.end()) {
    report(
        Severity::error, *this, {about<&Self::name>(*this), about<&IRgeom2d::file>(geometry)},
        {"not-in-mesh", "the mesh '{1}' has no node string named '{0}'",
         "name a node string of the mesh{2}, or add a line 'NS' to the mesh that ends in '{0}'"},
        "A nodestring (NS) with the name '{}' was found in the mesh file '{}'. Verify the name of the STRINGDEF in your model and check that the mesh contains a nodestring (NS) with the corresponding name.",
        name, geometry.file, perhaps(name, strings, [](const auto& string) -> std::string_view {
          return string.first;
        }));
    return;
  }
  string_nodes = it->second;
  if (string_nodes.size() < 2) {
    report(
        Severity::error, *this, {about<&Self::name>(*this), about<&IRgeom2d::file>(geometry)},
        {"short-string", "the node string '{0}' of the mesh '{1}' has fewer than two nodes",
         "write all its nodes into one line 'NS' of the mesh, the one that ends in '{0}'"},
        "The STRINGDEF with name '{}' has too few node id's assigned. You have to specify at least two node id's to define a string.",
        name, geometry.file);
  }
}

}  // namespace KESTparse
