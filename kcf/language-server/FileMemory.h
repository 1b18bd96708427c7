/// \file
/// What was read from the files that a command file names, as long as they stay what they were.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>

#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/document/SetupFindings.h"

namespace kcf::server {

/// What was read from files, and what the checker found in them.
struct KnownFiles {
  KESTparse::ReadFiles read;
  KESTparse::CheckedFiles checked;
};

/// Lets each mesh, series and result file be read once for each change of it. May be used from any
/// thread.
class FileMemory {
 public:
  using Time = std::filesystem::file_time_type;

  /// What is known of files below `directory` that did not change.
  KnownFiles known(const std::string& directory);
  /// Keeps what was read since `begin`.
  void learn(const std::string& directory, const KnownFiles& fresh, Time begin);

 private:
  struct Stamp {
    Time changed;
    std::uintmax_t size = 0;
    friend bool operator==(const Stamp&, const Stamp&) = default;
  };
  static Stamp stampOf(const std::string& directory, const std::string& path);

  std::mutex mutex_;
  KnownFiles files_;
  std::map<std::string, Stamp, std::less<>> stamps_;
};

}  // namespace kcf::server
