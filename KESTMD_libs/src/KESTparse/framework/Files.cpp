#include "KESTparse/framework/Files.h"

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <string_view>

#include "KESTparse/framework/Assert.h"

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

NodeStrings readNodeStrings(std::string_view text) {
  NodeStrings strings;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    // Nearly all lines are elements and nodes.
    if (!line.empty() &&
        (line.front() == 'N' || meshSeparators.find(line.front()) != std::string_view::npos)) {
      readNodeString(line, strings);
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return strings;
}

}  // namespace

FileText readFile(const std::string& path) {
  FileText text;
  if (!canOpen(path)) {
    return text;
  }
  std::ifstream in(path, std::ios::binary);
  constexpr std::size_t chunk = 1 << 16;
  std::size_t size = 0;
  do {
    text.content.resize(std::max(size + chunk, size + size / 2));
    in.read(text.content.data() + size, static_cast<std::streamsize>(text.content.size() - size));
    size += static_cast<std::size_t>(in.gcount());
  } while (in);
  text.content.resize(size);
  text.wasRead = !in.bad();
  return text;
}

const NodeStrings& meshNodeStrings(const std::string& path) {
  auto& meshes = GlobalValues::instance().readFiles.meshes;
  const auto known = meshes.find(path);
  if (known != meshes.end()) {
    return known->second;
  }
  const FileText text = readFile(path);
  ASSERT(text.wasRead, "Cannot open the grid file '" << path << "'.");
  return meshes.emplace(path, readNodeStrings(text.content)).first->second;
}

}  // namespace KESTparse
