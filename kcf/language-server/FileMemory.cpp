#include "language-server/FileMemory.h"

#include <chrono>
#include <system_error>
#include <utility>

namespace kcf::server {

FileMemory::Stamp FileMemory::stampOf(const std::string& directory, const std::string& path) {
  const std::filesystem::path whole = std::filesystem::path(directory) / path;
  std::error_code none;
  return {std::filesystem::last_write_time(whole, none), std::filesystem::file_size(whole, none)};
}

namespace {

/// The lists of files, each with its like in `other`.
template <class Known, class Other, class Step>
void forEachList(Known& known, Other& other, Step&& step) {
  step(known.read.meshes, other.read.meshes);
  step(known.read.solutionTimes, other.read.solutionTimes);
  step(known.read.series, other.read.series);
  step(known.checked.meshes, other.checked.meshes);
  step(known.checked.plainSeries, other.checked.plainSeries);
}

template <class Content>
const std::string& pathOf(const std::pair<const std::string, Content>& file) {
  return file.first;
}
const std::string& pathOf(const std::string& file) {
  return file;
}

/// Whether something is known of a file at all.
template <class Content>
bool isRead(const std::pair<const std::string, Content>& file) {
  return file.second != nullptr;
}
bool isRead(const std::string& /*file*/) {
  return true;
}

}  // namespace

KnownFiles FileMemory::known(const std::string& directory) {
  const std::lock_guard lock(mutex_);
  forEachList(files_, files_, [&](auto& files, auto& /*same*/) {
    std::erase_if(files, [&](const auto& file) {
      const auto stamp = stamps_.find(pathOf(file));
      return stamp == stamps_.end() || stamp->second != stampOf(directory, pathOf(file));
    });
  });
  return files_;
}

void FileMemory::learn(const std::string& directory, const KnownFiles& fresh, Time begin) {
  // Within the time that clocks of file systems are coarse, a file may change unseen.
  constexpr std::chrono::milliseconds coarseness{50};
  const std::lock_guard lock(mutex_);
  forEachList(files_, fresh, [&](auto& files, const auto& read) {
    std::erase_if(files, [&](const auto& file) { return !read.contains(pathOf(file)); });
    for (const auto& file : read) {
      const auto known = files.find(pathOf(file));
      const Stamp stamp = stampOf(directory, pathOf(file));
      const bool isOld = known != files.end() && *known == file;
      if (isRead(file) && !isOld && stamp.changed + coarseness < begin) {
        if (known != files.end()) {
          files.erase(known);
        }
        files.insert(file);
        stamps_[pathOf(file)] = stamp;
      }
    }
  });
}

}  // namespace kcf::server
