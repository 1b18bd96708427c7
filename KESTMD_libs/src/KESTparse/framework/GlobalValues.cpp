#include "KESTparse/framework/GlobalValues.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace KESTparse {
namespace {

bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

GlobalValues& GlobalValues::instance() {
  static GlobalValues store;
  return store;
}

std::string resolvePath(std::string_view name, std::string_view baseDirectory) {
  const bool hasDrive = name.size() >= 2 && name[1] == ':' && isLetter(name[0]);
  if (name.empty() || name.front() == '/' || hasDrive) {
    return std::string(name);
  }
  std::string path(baseDirectory.empty() ? std::string_view(GlobalValues::instance().basePath)
                                         : baseDirectory);
  path += '/';
  path += name;
  return path;
}

bool canOpen(const std::string& path) {
  std::error_code unreadable;
  // A stream opens a folder without complaint.
  if (std::filesystem::is_directory(path, unreadable)) {
    return false;
  }
  return std::ifstream(path).is_open();
}

}  // namespace KESTparse
