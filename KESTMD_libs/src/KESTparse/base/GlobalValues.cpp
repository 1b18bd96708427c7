#include "KESTparse/base/GlobalValues.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace KESTparse {
namespace {

bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

constinit thread_local GlobalValues* ActiveValues::active_ = nullptr;

ActiveValues::ActiveValues(GlobalValues& values) : before_(active_) {
  active_ = &values;
}

ActiveValues::~ActiveValues() {
  active_ = before_;
}

GlobalValues& GlobalValues::ownStore() {
  thread_local GlobalValues store;
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

std::string openedPath(const std::string& path) {
  const std::string& directory = GlobalValues::instance().directory;
  return directory.empty() || path.empty() || path.front() == '/' ? path : directory + '/' + path;
}

namespace {

bool isReadable(const std::string& opened) {
  namespace fs = std::filesystem;
  std::error_code unreadable;
  // A stream opens a folder without complaint; a pipe waits for its writer and can be read only
  // once, and a device may never end.
  const fs::file_type type = fs::status(opened, unreadable).type();
  const bool isNull = type == fs::file_type::character &&
                      fs::canonical(opened, unreadable) == fs::path("/dev/null");
  if (type != fs::file_type::regular && !isNull) {
    return false;
  }
  const int descriptor = open(opened.c_str(), O_RDONLY | O_CLOEXEC);
  return descriptor >= 0 && close(descriptor) == 0;
}

}  // namespace

bool canOpen(const std::string& path) {
  GlobalValues& values = GlobalValues::instance();
  if (!values.readsFiles) {
    return true;
  }
  // A check is of one moment; whoever else asks may ask again when the file has come or gone.
  if (!values.explainsMessages) {
    return isReadable(openedPath(path));
  }
  const auto [known, isNew] = values.triedFiles.try_emplace(path);
  if (isNew) {
    known->second = isReadable(openedPath(path));
  }
  return known->second;
}

}  // namespace KESTparse
