#include "h5io/SolutionTimes.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "KESTparse/framework/GlobalValues.h"
#include "KESTparse/framework/Logger.h"
#include "ResultFile.h"

namespace h5io {
namespace {

/// The reader, whose library stands beside the program and is loaded when it is first asked for.
/// Null when it is not there.
Reader loadReader() {
  std::error_code unknown;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", unknown);
  const auto path = program.parent_path() / KESTRIX_RESULT_READER;
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
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
