#include "KESTparse/linking/IRbndrExtern.h"

namespace KESTparse {

void IRbndrExtern::getDescription(std::ostream& out) const {
  out << "Defines boundary conditions for KESTextern subdomain.";
}

void IRbndrExtern::createTags() {
  word<&Self::name>(
      "Every boundary condition may be given a name which can be used further for coupling.")
      .preset("unspecified_name");
  text<&Self::type>("discharge: Specifies an outflow discharge boundary condition for KESTextern.")
      .mandatory()
      .preset("UndefinedBoundaryType")
      .oneOf({"discharge"});
  identifiedBy({"name"});
}

}  // namespace KESTparse
