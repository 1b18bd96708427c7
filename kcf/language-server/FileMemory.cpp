#include "language-server/FileMemory.h"

#include <chrono>
#include <system_error>

namespace kcf::server {

FileMemory::Stamp FileMemory::stampOf(const std::string& directory, const std::string& path) {
  const std::filesystem::path whole = std::filesystem::path(directory) / path;
  std::error_code none;
  return {std::filesystem::last_write_time(whole, none), std::filesystem::file_size(whole, none)};
}

KESTparse::ReadFiles FileMemory::known(const std::string& directory) {
  const std::lock_guard lock(mutex_);
  const auto forgetChanged = [&](auto& files) {
    std::erase_if(files, [&](const auto& file) {
      const auto stamp = stamps_.find(file.first);
      return stamp == stamps_.end() || stamp->second != stampOf(directory, file.first);
    });
  };
  forgetChanged(files_.meshes);
  forgetChanged(files_.solutionTimes);
  forgetChanged(files_.series);
  return files_;
}

void FileMemory::learn(const std::string& directory, const KESTparse::ReadFiles& read, Time begin) {
  // Within the time that clocks of file systems are coarse, a file may change unseen.
  constexpr std::chrono::milliseconds coarseness{50};
  const std::lock_guard lock(mutex_);
  const auto keep = [&](auto& files, const auto& fresh) {
    std::erase_if(files, [&fresh](const auto& file) { return !fresh.contains(file.first); });
    for (const auto& [path, content] : fresh) {
      const auto known = files.find(path);
      const Stamp stamp = stampOf(directory, path);
      const bool isOld = known != files.end() && known->second == content;
      if (content != nullptr && !isOld && stamp.changed + coarseness < begin) {
        files[path] = content;
        stamps_[path] = stamp;
      }
    }
  };
  keep(files_.meshes, read.meshes);
  keep(files_.solutionTimes, read.solutionTimes);
  keep(files_.series, read.series);
}

}  // namespace kcf::server
