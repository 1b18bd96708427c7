#include "h5io/SolutionTimes.h"

#include <dlfcn.h>

#include "KESTparse/framework/GlobalValues.h"
#include "KESTparse/framework/Logger.h"
#include "ResultFile.h"

namespace h5io {
namespace {

/// The reader, whose library is loaded when it is first asked for. Null when it is not installed.
Reader loadReader() {
  void* const library = dlopen(KESTRIX_RESULT_READER, RTLD_NOW | RTLD_LOCAL);
  return library == nullptr ? nullptr : reinterpret_cast<Reader>(dlsym(library, readerSymbol));
}

std::vector<double> readSolutionTimes(const std::string& fileName) {
  const Reader read = loadReader();
  if (read == nullptr) {
    throw OpenFileFailed(fileName);
  }
  std::vector<double> times;
  read(fileName, times);
  return times;
}

}  // namespace

std::vector<double> getSolutionTimes(const std::string& fileName) {
  auto& known = KESTparse::GlobalValues::instance().readFiles.solutionTimes;
  if (const auto it = known.find(fileName); it != known.end()) {
    return it->second;
  }
  try {
    return known.emplace(fileName, readSolutionTimes(fileName)).first->second;
  } catch (const Exception& exception) {
    KESTparse::getLogger().log(
        KESTparse::level::warning,
        "Determining the existing solution times failed: " + exception.getMessage());
    return {};
  }
}

}  // namespace h5io
