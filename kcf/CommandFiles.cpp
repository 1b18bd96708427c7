#include "CommandFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "KESTparse/base/Files.h"
#include "OutputFile.h"

namespace kcf {
namespace {

namespace fs = std::filesystem;

/// Ends the step at hand when the system refused it.
void requireSuccess(bool succeeded) {
  if (!succeeded) {
    throw std::system_error(errno, std::generic_category());
  }
}

/// The command files below `folder`. Links to folders are not followed: they may lead back.
std::vector<std::string> commandFilesBelow(const std::string& folder,
                                           std::vector<std::string>& faults) {
  std::vector<std::string> found;
  std::vector<std::string> folders{folder};
  while (!folders.empty()) {
    const std::string current = std::move(folders.back());
    folders.pop_back();
    std::error_code fault;
    fs::directory_iterator entry(current, fault);
    while (!fault && entry != fs::directory_iterator()) {
      const std::string path = entry->path().generic_string();
      std::error_code unknown;
      if (entry->is_directory(unknown)) {
        if (!entry->is_symlink(unknown)) {
          folders.push_back(path);
        }
      } else if (entry->path().extension() == ".kcf" && !entry->is_other(unknown)) {
        found.push_back(path);
      }
      entry.increment(fault);
    }
    if (fault) {
      faults.push_back(shownPath(current) + " cannot be read: " + fault.message());
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

/// A file that is open for reading.
class Descriptor {
 public:
  explicit Descriptor(const std::string& path) : number_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    requireSuccess(number_ >= 0);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(number_); }

  [[nodiscard]] int get() const { return number_; }

 private:
  int number_;
};

/// All that a file, a pipe or a terminal gives.
std::string contentOf(int descriptor) {
  // Terminals end, and other devices may not.
  constexpr std::size_t mostOfDevice = 1 << 20;
  constexpr std::size_t piece = 1 << 16;
  struct stat facts {};
  requireSuccess(fstat(descriptor, &facts) == 0);
  const auto expected = static_cast<std::size_t>(std::max<off_t>(facts.st_size, 0));
  std::string content;
  for (std::size_t size = 0;;) {
    if (S_ISCHR(facts.st_mode) && size > mostOfDevice) {
      throw std::system_error(std::make_error_code(std::errc::file_too_large));
    }
    if (size == content.size()) {
      // One byte more than a file has tells that it has ended.
      content.resize(std::max(size + std::max(size / 2, piece), expected + 1));
    }
    const ssize_t count = read(descriptor, content.data() + size, content.size() - size);
    requireSuccess(count >= 0 || errno == EINTR);
    size += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    if (count == 0) {
      content.resize(size);
      return content;
    }
  }
}

}  // namespace

std::string shownPath(const std::string& path) {
  std::string shown = fs::path(path).generic_string();
  while (shown.starts_with("./") && shown.size() > 2) {
    shown.erase(0, shown.find_first_not_of('/', 1));
  }
  return shown;
}

CommandFiles findCommandFiles(const std::vector<std::string>& paths) {
  CommandFiles files;
  std::set<std::string> known;
  const auto add = [&files, &known](const std::string& path) {
    if (known.insert(shownPath(path)).second) {
      files.paths.push_back(path);
    }
  };
  for (const std::string& path : paths) {
    std::error_code unknown;
    if (path != standardInput && fs::is_directory(path, unknown)) {
      for (const std::string& file : commandFilesBelow(path, files.faults)) {
        add(file);
      }
    } else {
      add(path);
    }
  }
  return files;
}

std::string readCommandFile(const std::string& path) {
  try {
    return path == standardInput ? contentOf(STDIN_FILENO) : contentOf(Descriptor(path).get());
  } catch (const std::system_error& fault) {
    const std::string shown =
        path == standardInput ? "standard input" : "'" + shownPath(path) + "'";
    throw std::runtime_error(fault.code() == std::errc::no_such_file_or_directory
                                 ? shown + " does not exist"
                                 : shown + " cannot be read: " + fault.code().message());
  }
}

void replaceCommandFile(const std::string& path, const std::string& before,
                        const std::string& after) {
  const auto require = [&path](bool holds, const char* why) {
    if (!holds) {
      throw std::runtime_error("'" + shownPath(path) + "' " + why);
    }
  };
  std::error_code unknown;
  require(fs::is_regular_file(path, unknown), "cannot be written: it is no file, or gone by now");
  require(KESTparse::readFile(path).content == before,
          "was changed by someone else meanwhile, and stays as it is");
  writeFile(path, after, true);
}

}  // namespace kcf
