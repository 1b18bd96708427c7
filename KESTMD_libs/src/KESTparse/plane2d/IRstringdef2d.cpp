#include "KESTparse/plane2d/IRstringdef2d.h"

#include "KESTparse/base/Files.h"
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
  const auto* const geometry = ancestor<IRgeom2d>();
  if (geometry == nullptr || geometry->type != "2dm") {
    return;
  }
  // The mesh is opened as it is named, relative to the working folder of the process.
  const NodeStrings& strings = meshNodeStrings(geometry->file);
  const auto it = strings.find(name);
  if (it == strings.end()) {
    error(
        "A nodestring (NS) with the name '{}' was found in the mesh file '{}'. Verify the name of the STRINGDEF in your model and check that the mesh contains a nodestring (NS) with the corresponding name.",
        name, geometry->file);
    return;
  }
  string_nodes = it->second;
  if (string_nodes.size() < 2) {
    error(
        "The STRINGDEF with name '{}' has too few node id's assigned. You have to specify at least two node id's to define a string.",
        name);
  }
}

}  // namespace KESTparse
