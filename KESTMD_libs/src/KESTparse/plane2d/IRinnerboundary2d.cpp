#include "KESTparse/plane2d/IRinnerboundary2d.h"

#include "KESTparse/plane2d/IRgeom2d.h"
#include "KESTparse/plane2d/IRkestplane.h"

namespace KESTparse {

void IRinnerboundary2d::getDescription(std::ostream& out) const {
  out << "This block is used to define inner boundaries within a 2D grid. Possible choices are weir and gate.";
}

void IRinnerboundary2d::createTags() {
  text<&Self::type>("weir: An inner weir requires a boundary file with two columns")
      .mandatory()
      .preset("notype")
      .oneOf({"gate", "weir", "hqrelation"});
  word<&Self::string_name1>(
      "This is the name of a cross section string defined in a STRINGDEF block. Usually, the first string corresponds to the expected outflow boundary.")
      .mandatory()
      .preset("unspecified_stringname");
  word<&Self::string_name2>(
      "This is the name of a cross section string defined in a STRINGDEF block. Usually, the second string corresponds to the expected inflow boundary.")
      .mandatory()
      .preset("unspecified_stringname");
  seriesFile<&Self::file, &Self::file_table>(
      "This is the filename of the file that contains the weir/gate level at different moments in time.")
      .mandatory()
      .preset("unspecified_file");
  real<&Self::my>(
      "This factor is often called 'Poleni-factor'. It is mulitplied to the discharge formula and allows a certain calibration of a weir/gate.")
      .preset("-1.0")
      .unit("[-]")
      .above(0)
      .atMost(1);
  real<&Self::momentum_factor>("This is an advanced feature. Usually it needs not to be changed.")
      .defaultsTo("1.0")
      .unit("[-]")
      .usedIf("type", {"gate", "hqrelation"});
}

void IRinnerboundary2d::checkRules() {
  if (const IRgeom2d* const geometry = enclosing<IRkestplane>().geom_ptr; geometry != nullptr) {
    geometry->checkInnerBoundary(*this, type, about<&Self::string_name1>(*this), string_name1,
                                 about<&Self::string_name2>(*this), string_name2);
  }
}

}  // namespace KESTparse
