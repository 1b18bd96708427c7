/// \file
/// The values that hold for a command file as a whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrix {
class Table;
}  // namespace Kestrix

namespace KESTparse {

/// The node strings of a mesh: node ids by the name of the string.
using NodeStrings = std::map<std::string, std::vector<int>, std::less<>>;

/// What was read from files, by path. Copies share it.
struct ReadFiles {
  template <class T>
  using ByPath = std::map<std::string, std::shared_ptr<const T>, std::less<>>;
  ByPath<NodeStrings> meshes;
  ByPath<std::vector<double>> solutionTimes;
  ByPath<Kestrix::Table> series;  ///< only where `GlobalValues::keepsSeries` is set
};

class Console;

/// Physical constants, the base path of file names, what was read from the files that a command
/// file names, and the host: one store for each command file that is read.
struct GlobalValues {
  double gravity = 9.81;                          ///< gravitational acceleration [m/s2]
  double sqrtGravity = 3.1320919526731650;        ///< square root of gravity
  double sqrtTwoGravity = 4.4294469180700204;     ///< square root of twice gravity
  double reciprocalGravity = 0.1019367991845056;  ///< one over gravity
  double viscosity = 1e-06;                       ///< kinematic viscosity of water [m2/s]
  double rhoFluid = 1000.0;                       ///< density of water [kg/m3]
  std::string basePath;           ///< folder against which relative file names are resolved
  std::string errorFileStem;      ///< stem of the error file that the fatal report names to sinks
  bool explainsMessages = false;  ///< messages of rules carry what they are about
  /// Names that suggestions may still be compared with: comparing each lost name with each known
  /// one would take the square of their number.
  std::size_t comparisonsLeft = 1'000'000;
  /// Folder that relative names count from wherever a file is opened; empty for the current one.
  std::string directory;
  bool readsFiles = true;            ///< files that the command file names are opened
  bool resolveRelativePaths = true;  ///< relative names of series files are resolved
  int verbosity = 3;                 ///< highest level of messages that the converter shows
  Console* console = nullptr;        ///< the host; the converter's for none
  /// Counts the changes of all trees: what was derived from one is of no worth behind a change.
  std::uint64_t treeChanges = 1;
  std::map<std::string, bool> triedFiles;  ///< by path, whether it can be opened
  ReadFiles readFiles;                     ///< meshes and result files that were read
  bool keepsSeries = false;  ///< series are kept, too: each is read once, and told once

  /// The store of the file that this thread reads. A thread that names none has one of its own.
  static GlobalValues& instance();

 private:
  static GlobalValues& ownStore();
};

/// Makes a store the one of the file that this thread reads, as long as this object lives.
class ActiveValues {
 public:
  explicit ActiveValues(GlobalValues& values);
  ActiveValues(const ActiveValues&) = delete;
  ActiveValues& operator=(const ActiveValues&) = delete;
  ~ActiveValues();

 private:
  friend struct GlobalValues;
  static constinit thread_local GlobalValues* active_;
  GlobalValues* before_;
};

inline GlobalValues& GlobalValues::instance() {
  if (ActiveValues::active_ == nullptr) [[unlikely]] {
    return ownStore();
  }
  return *ActiveValues::active_;
}

/// The path under which a file named in the command file is opened.
/// A name that begins with `/`, or with a letter and a colon, stays as it is, and so does an empty
/// one. Any other is joined to `baseDirectory`, or to the global base path where that is empty.
std::string resolvePath(std::string_view name, std::string_view baseDirectory = {});

/// Where the file that is named `path` is opened: in `GlobalValues::directory`, unless it is
/// absolute.
std::string openedPath(const std::string& path);

/// Whether `path` is a file that can be opened for reading: no folder, pipe or device. Where files
/// are not read, all can.
bool canOpen(const std::string& path);

}  // namespace KESTparse
