/// \file
/// Fuzz target: a result file, read for the times of its solutions.

#include "FuzzRun.h"
#include "h5io/SolutionTimes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::beginRun();
  const fuzz::ScratchFile file(fuzz::asText(data, size));
  h5io::getSolutionTimes(file.path());
  return 0;
}
