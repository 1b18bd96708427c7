#include "CommandFiles.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <set>
#include <sstream>
#include <system_error>
#include <utility>

#include "KESTparse/base/Files.h"

namespace kcf {
namespace {

namespace fs = std::filesystem;

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
      } else if (entry->path().extension() == ".kcf") {
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

std::optional<std::string> readCommandFile(const std::string& path) {
  if (path == standardInput) {
    std::ostringstream text;
    text << std::cin.rdbuf();
    return std::cin.bad() ? std::nullopt : std::optional(std::move(text).str());
  }
  KESTparse::FileText file = KESTparse::readFile(path);
  return file.wasRead ? std::optional(std::move(file.content)) : std::nullopt;
}

}  // namespace kcf
