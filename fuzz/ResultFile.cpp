/// \file
/// Fuzz target: a result file, read for the times of its solutions. The reader's process may crash,
/// since HDF5 does; what the sanitizers report of it goes to the file `reader-reports`.

#include <fcntl.h>
#include <pthread.h>
#include <sanitizer/common_interface_defs.h>

#include "FuzzRun.h"
#include "h5io/SolutionTimes.h"

namespace {

void setReaderApart() {
  const std::intptr_t reports = open("reader-reports", O_WRONLY | O_CREAT | O_APPEND, 0644);
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the interface wants it so.
  __sanitizer_set_report_fd(reinterpret_cast<void*>(reports));
  // Its end is no end of the target.
  __sanitizer_set_death_callback(nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  return pthread_atfork(nullptr, nullptr, setReaderApart);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::beginRun();
  const fuzz::ScratchFile file(fuzz::asText(data, size));
  h5io::getSolutionTimes(file.path());
  return 0;
}
