#include "KESTparse/chain1d/IRoutput1d.h"

#include "KESTparse/chain1d/IRspecout1d.h"

namespace KESTparse {

void IRoutput1d::getDescription(std::ostream& out) const {
  out << "This block specifies the desired output data.";
}

void IRoutput1d::createSubBlocks() {
  subBlock<&Self::specout_ptrV>("SPECIAL_OUTPUT").repeatable();
}

void IRoutput1d::createTags() {
  real<&Self::output_time_step>(
      "Time step for default output file 'region_name_out.txt'. Be aware that small output time step can lead to large default output file.")
      .mandatory()
      .preset("100.0")
      .unit("[s]")
      .atLeast(0);
  real<&Self::console_time_step>("Time step for the console output")
      .preset("1.0")
      .unit("[s]")
      .atLeast(0);
  real<&Self::restart_time_step>("Time step for writing default restart files.")
      .defaultsTo("1E32")
      .preset("-1.0")
      .unit("[s]")
      .atLeast(0);
}

}  // namespace KESTparse
