#include "KESTparse/base/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/Console.h"

namespace KESTparse {
namespace {

constexpr std::string_view meshSeparators = " \t\"\r\n";

/// Takes the first token off `line`; empty when there is none left.
std::string_view takeToken(std::string_view& line) {
  const std::size_t begin = line.find_first_not_of(meshSeparators);
  if (begin == std::string_view::npos) {
    line = {};
    return {};
  }
  const std::size_t end = std::min(line.find_first_of(meshSeparators, begin), line.size());
  const std::string_view token = line.substr(begin, end - begin);
  line.remove_prefix(end);
  return token;
}

/// The absolute value of a node id; the last one of a string is negative in the file.
int nodeId(std::string_view token) {
  int id = 0;
  const auto [stop, error] = std::from_chars(token.data(), token.data() + token.size(), id);
  // Whatever is out of the ordinary is decided, and refused, by the library.
  if (error != std::errc{} || stop != token.data() + token.size()) {
    id = std::stoi(std::string(token));
  }
  // The lowest integer has no counterpart.
  return id == std::numeric_limits<int>::min() ? id : std::abs(id);
}

void readNodeString(std::string_view line, NodeStrings& strings) {
  if (takeToken(line) != "NS") {
    return;
  }
  std::vector<int> ids;
  std::string_view last = takeToken(line);
  for (std::string_view next = takeToken(line); !next.empty(); next = takeToken(line)) {
    ids.push_back(nodeId(last));
    last = next;
  }
  // A line of the mere word names no string: it is its own last token.
  strings[last.empty() ? std::string("NS") : std::string(last)] = std::move(ids);
}

/// Adds the node strings of whole lines of a mesh.
void readNodeStrings(std::string_view lines, NodeStrings& strings) {
  // Nearly all lines are elements and nodes, so the word is looked for and not the lines; its
  // second letter is the rarer one.
  constexpr char secondLetter = 'S';
  for (std::size_t place = lines.find(secondLetter); place != std::string_view::npos;) {
    const std::size_t end = std::min(lines.find('\n', place), lines.size());
    const std::size_t feed = lines.rfind('\n', place);
    const std::size_t begin = feed == std::string_view::npos ? 0 : feed + 1;
    readNodeString(lines.substr(begin, end - begin), strings);
    place = lines.find(secondLetter, end);
  }
}

/// Adds the node strings of the mesh at `path`, which is read in pieces: most of a mesh is not
/// kept. \return false when it cannot be read.
bool readNodeStringsFrom(const std::string& path, NodeStrings& strings) {
  requireReading();
  if (!canOpen(path)) {
    return false;
  }
  std::ifstream mesh(openedPath(path), std::ios::binary);
  if (!mesh.is_open()) {
    return false;
  }
  constexpr std::size_t pieceSize = 1 << 18;
  std::vector<char> piece(pieceSize);
  std::size_t size = 0;
  while (mesh.read(piece.data() + size, static_cast<std::streamsize>(piece.size() - size)) ||
         mesh.gcount() > 0) {
    size += static_cast<std::size_t>(mesh.gcount());
    const std::string_view text(piece.data(), size);
    const std::size_t feed = text.rfind('\n');
    const std::size_t whole = feed == std::string_view::npos ? 0 : feed + 1;
    readNodeStrings(text.substr(0, whole), strings);
    std::copy(text.begin() + static_cast<std::ptrdiff_t>(whole), text.end(), piece.begin());
    size -= whole;
    if (size == piece.size()) {
      piece.resize(2 * size);
    }
  }
  readNodeStrings(std::string_view(piece.data(), size), strings);
  return !mesh.bad();
}

/// Ends the step at hand when it failed.
void require(bool succeeded) {
  if (!succeeded) {
    throw std::system_error(errno, std::generic_category());
  }
}

void writeAll(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(descriptor, content.data(), content.size());
    require(written >= 0 || errno == EINTR);
    content.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
  }
}

/// A file beside the one that it is to replace; gone unless it took its place.
class Replacement {
 public:
  explicit Replacement(const std::filesystem::path& target)
      : target_(target),
        path_((target.parent_path() / ("." + target.filename().string() + ".XXXXXX")).string()),
        descriptor_(mkstemp(path_.data())) {
    require(descriptor_ >= 0);
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  ~Replacement() {
    if (descriptor_ >= 0) {
      close(descriptor_);
    }
    if (!path_.empty()) {
      unlink(path_.c_str());
    }
  }

  void write(std::string_view content) const { writeAll(descriptor_, content); }

  /// Takes over owner and permissions, and then the place.
  void takePlace() {
    struct stat old {};
    require(stat(target_.c_str(), &old) == 0);
    // Only the administrator may give a file away; a member of the group may give it to the group.
    if (fchown(descriptor_, old.st_uid, old.st_gid) != 0) {
      static_cast<void>(fchown(descriptor_, static_cast<uid_t>(-1), old.st_gid) == 0);
    }
    require(fsync(descriptor_) == 0);
    finish(old.st_mode & 07777);
    require(std::rename(path_.c_str(), target_.c_str()) == 0);
    path_.clear();
  }

  /// Takes the place if it is free.
  void takeFreePlace() {
    const mode_t masked = umask(0);
    umask(masked);
    finish(0666 & ~masked);
    // Some file systems have no links, and others cannot tell whether a place is free.
    if (renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0) {
      path_.clear();
    } else {
      require(link(path_.c_str(), target_.c_str()) == 0);
    }
  }

 private:
  void finish(mode_t permissions) {
    require(fchmod(descriptor_, permissions) == 0);
    require(close(std::exchange(descriptor_, -1)) == 0);
  }

  std::filesystem::path target_;
  std::string path_;
  int descriptor_;
};

}  // namespace

void requireReading() {
  if (!GlobalValues::instance().readsFiles) {
    throw Stopped{Stopped::Kind::skipped, {}};
  }
}

FileText readFile(const std::string& path) {
  FileText text;
  requireReading();
  if (!canOpen(path)) {
    return text;
  }
  std::ifstream in(openedPath(path), std::ios::binary);
  if (!in.is_open()) {
    return text;
  }
  constexpr std::size_t chunk = 1 << 16;
  // Room for all of a file at once, and for one character more, which tells that it has ended.
  std::error_code unsized;
  const std::uintmax_t expected = std::filesystem::file_size(openedPath(path), unsized);
  std::size_t room = unsized ? chunk : std::max<std::size_t>(expected + 1, chunk);
  std::size_t size = 0;
  do {
    text.content.resize(std::max(room, size + size / 2));
    in.read(text.content.data() + size, static_cast<std::streamsize>(text.content.size() - size));
    size += static_cast<std::size_t>(in.gcount());
    room = size + chunk;
  } while (in);
  text.content.resize(size);
  text.wasRead = !in.bad();
  return text;
}

void replaceFile(const std::string& path, std::string_view content) {
  const std::filesystem::path target = std::filesystem::canonical(path);
  require(access(target.c_str(), W_OK) == 0);
  if (std::filesystem::is_other(target)) {
    const int descriptor = open(target.c_str(), O_WRONLY | O_CLOEXEC);
    require(descriptor >= 0);
    writeAll(descriptor, content);
    require(close(descriptor) == 0);
    return;
  }
  Replacement replacement(target);
  replacement.write(content);
  replacement.takePlace();
}

void createFile(const std::string& path, std::string_view content) {
  Replacement draft{std::filesystem::path(path)};
  draft.write(content);
  draft.takeFreePlace();
}

const NodeStrings& meshNodeStrings(const std::string& path) {
  auto& meshes = GlobalValues::instance().readFiles.meshes;
  const auto known = meshes.find(path);
  if (known != meshes.end()) {
    return *known->second;
  }
  NodeStrings strings;
  const bool wasRead = readNodeStringsFrom(path, strings);
  ASSERT(wasRead, "Cannot open the grid file '" << path << "'.");
  auto kept = std::make_shared<const NodeStrings>(std::move(strings));
  return *meshes.emplace(path, std::move(kept)).first->second;
}

}  // namespace KESTparse
