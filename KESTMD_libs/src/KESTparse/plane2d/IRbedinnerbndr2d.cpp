#include "KESTparse/plane2d/IRbedinnerbndr2d.h"

#include "KESTparse/plane2d/IRgeom2d.h"
#include "KESTparse/plane2d/IRkestplane.h"

namespace KESTparse {

void IRbedinnerbndr2d::getDescription(std::ostream& out) const {
  out << "This block is used to define bedload inner boundaries within a 2D grid.";
}

void IRbedinnerbndr2d::createTags() {
  text<&Self::type>("weir: An inner sediment weir requires a boundary file with two columns")
      .mandatory()
      .preset("notype")
      .oneOf({"open", "weir"});
  word<&Self::string_name1>(
      "This is the name of a cross section string defined in a STRINGDEF block. Usually, the first string corresponds to the expected outflow (i.e. upstream) boundary.")
      .mandatory()
      .preset("unspecified_stringname");
  word<&Self::string_name2>(
      "This is the name of a cross section string defined in a STRINGDEF block. Usually, the second string corresponds to the expected inflow (i.e. downstream) boundary.")
      .mandatory()
      .preset("unspecified_stringname");
  seriesFile<&Self::file, &Self::file_table>(
      "This is the filename of the file that contains the weir/gate level at different moments in time.")
      .preset("unspecified_file");
}

void IRbedinnerbndr2d::checkRules() {
  if (const IRgeom2d* const geometry = enclosing<IRkestplane>().geom_ptr; geometry != nullptr) {
    geometry->checkInnerBoundary(*this, type, about<&Self::string_name1>(*this), string_name1,
                                 about<&Self::string_name2>(*this), string_name2);
  }
}

}  // namespace KESTparse
