/// \file
/// What is in the files that a command file names, in a few words.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace kcf::server {

/// A node string of a mesh, and where its name stands in the mesh; lines count from 0.
struct MeshName {
  std::string name;
  std::size_t line = 0;
  std::size_t begin = 0;  ///< in bytes from the begin of the line
};

struct FileFacts {
  bool exists = false;
  std::string summary;            ///< in Markdown
  std::vector<MeshName> strings;  ///< of a mesh
};

/// Reads each file once for each change of it. May be used from any thread; takes as long as
/// reading the file.
class FileFactsMemory {
 public:
  /// What a file holds, which its ending tells.
  FileFacts of(const std::filesystem::path& path) { return read(path, path.extension() == ".2dm"); }
  /// The same of a file that is a mesh.
  FileFacts ofMesh(const std::filesystem::path& path) { return read(path, true); }

 private:
  struct Entry {
    std::filesystem::file_time_type changed;
    std::uintmax_t size = 0;
    FileFacts facts;
  };
  FileFacts read(const std::filesystem::path& path, bool isMesh);

  std::mutex mutex_;
  std::map<std::pair<std::filesystem::path, bool>, Entry> entries_;
};

}  // namespace kcf::server
