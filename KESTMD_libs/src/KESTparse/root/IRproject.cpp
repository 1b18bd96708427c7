#include "KESTparse/root/IRproject.h"

namespace KESTparse {

void IRproject::getDescription(std::ostream& out) const {
  out << "Contains some meta information about the setup. This is the onlyblock without further inner blocks.";
}

void IRproject::createTags() {
  word<&Self::title>("The title of the project as a string without any whitespace.")
      .defaultsTo("unnamed_project");
  word<&Self::author>("Name of the autor without any withespace.").defaultsTo("anonymous_author");
  text<&Self::date>("Date of creation of the file.");
  real<&Self::real_time_factor>(
      "The real time factor multiplication which allows to execute KESTRIX with a predefined speed.")
      .preset("-1.0")
      .above(0);
}

void IRproject::getExample(std::ostream& out) const {
  out << "PROJECT {\n  title = my_river\n  author = me\n  date = 1.1.2020\n}\n";
}

void IRproject::checkRules() {
  if (real_time_factor != -1.0) {
    warning<&Self::real_time_factor>(
        {"slowed-down", "'real_time_factor' can slow down the simulation very much",
         "remove 'real_time_factor', unless the simulation shall keep pace with a clock"},
        " !!! Attention !!!:\n if the real_time_factor is set, the simulation can extremely be slowed down!\nBe sure that you know what you are doing...");
  }
}

}  // namespace KESTparse
