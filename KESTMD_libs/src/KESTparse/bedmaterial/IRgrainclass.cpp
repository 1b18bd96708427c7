#include "KESTparse/bedmaterial/IRgrainclass.h"

namespace KESTparse {

void IRgrainclass::getDescription(std::ostream& out) const {
  out << "This block defines the mean diameters of ALL possibly occurring grains of the bed material in millimetres.";
}

void IRgrainclass::createTags() {
  reals<&Self::diameters>(
      "The number of diameters in the list automatically sets the number of grains.")
      .mandatory()
      .unit("[mm]");
}

void IRgrainclass::checkRules() {
  if (!diameters.empty() && !(diameters.front() > 0)) {
    report(Severity::error, *this, {about<&Self::diameters>(*this, 1)},
           {"diameter-not-positive", "a grain cannot have a diameter of {0} mm",
            "give each diameter in mm, above 0"},
           "Grain sizes must be > 0", diameters.front());
    return;
  }
  for (std::size_t i = 1; i < diameters.size(); ++i) {
    if (diameters[i] < diameters[i - 1]) {
      report(Severity::error, *this,
             {about<&Self::diameters>(*this, i + 1), about<&Self::diameters>(*this, i)},
             {"diameters-not-ascending",
              "the diameter of {0} mm stands behind the greater one of {1} mm",
              "list the diameters from the smallest to the greatest"},
             "Grain sizes must be in strictly ascending order", diameters[i], diameters[i - 1]);
      if (GlobalValues::instance().explainsMessages) {
        return;  // a list in another order is one fault
      }
    }
  }
}

}  // namespace KESTparse
