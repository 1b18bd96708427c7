#include "OutputFile.h"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "KESTparse/base/Files.h"

namespace kcf {

void writeFile(const std::string& path, std::string_view content, bool mayReplace) {
  namespace fs = std::filesystem;
  std::error_code unknown;
  const bool isThere = fs::exists(fs::symlink_status(path, unknown));
  try {
    if (isThere && (mayReplace || fs::is_other(path, unknown))) {
      KESTparse::replaceFile(path, content);
    } else {
      KESTparse::createFile(path, content);
    }
  } catch (const std::system_error& fault) {
    if (fault.code() == std::errc::file_exists) {
      throw std::runtime_error(fmt::format("'{}' is there already; --force replaces it", path));
    }
    throw std::runtime_error(
        fmt::format("'{}' cannot be written: {}", path, fault.code().message()));
  }
}

}  // namespace kcf
