#include "KESTparse/bedmaterial/IRmixtr.h"

#include <cmath>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/bedmaterial/IRbedmat.h"
#include "KESTparse/bedmaterial/IRgrainclass.h"

namespace KESTparse {

void IRmixtr::getDescription(std::ostream& out) const {
  out << "This block allows the definition of a grain mixture.";
}

void IRmixtr::createTags() {
  word<&Self::name>("The name of this mixture is used elsewhere for easy-to-use assignments.")
      .mandatory();
  reals<&Self::volume_fraction>(
      "According to the number of grain diameters from the GRAIN_CLASS, for each class, the percental fraction of volume has to be specified using a value between 0 and 100 %. ...")
      .mandatory()
      .unit("[%]")
      .constraint("[0-100]");
  identifiedBy({"name"});
}

void IRmixtr::checkRules() {
  double sum = 0;
  for (std::size_t position = 0; position < volume_fraction.size(); ++position) {
    if (volume_fraction[position] < 0) {
      report(Severity::error, *this, {about<&Self::volume_fraction>(*this, position + 1)},
             {"negative-fraction", "the volume fraction {1} is negative",
              "give each grain class a share between 0 and 100 percent"},
             "Volume fraction {} is negative: {}", position,
             doubleToString(volume_fraction[position]));
    }
    sum += volume_fraction[position];
  }
  constexpr double tolerance = 1e-6;
  if (std::abs(sum - 100.0) > tolerance) {
    error<&Self::volume_fraction>(
        {"fraction-sum",
         "the volume fractions of the mixture '{0}' add up to {2:.10g} and not to 100",
         "give the fractions in percent, so that they add up to 100"},
        "All volume fractions of MIXTURE '{}' should add up to 100.0 percent but I get {}", name,
        doubleToString(sum), sum);
  }
  const InputBlock* const found = getBlockByPath("../GRAIN_CLASS");
  if (found == nullptr) {
    enclosing<IRbedmat>().reportNoGrainClasses(
        *this, "No grain classes found, but required. Please complete your input.");
    return;
  }
  const auto* const block = dynamic_cast<const IRgrainclass*>(found);
  ASSERT(block != nullptr, "");
  if (volume_fraction.size() != block->diameters.size()) {
    report(
        Severity::error, *this,
        {about<&Self::volume_fraction>(*this), about<&IRgrainclass::diameters>(*block)},
        {"fraction-count",
         "the number of volume fractions of the mixture '{0}' ({1}) is not that of the diameters in GRAIN_CLASS ({2})",
         "give one fraction for each diameter, and 0 for grains that the mixture does not hold"},
        "MIXTURE '{}' has {} entries in volume_fraction but GRAIN_CLASS has {} diameters defined, but I expect the same number of entries",
        name, volume_fraction.size(), block->diameters.size());
  }
}

}  // namespace KESTparse
