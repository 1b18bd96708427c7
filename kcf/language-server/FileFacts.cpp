#include "language-server/FileFacts.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <string_view>
#include <system_error>

#include "KESTcore/Mesh.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/Files.h"
#include "preview/Series.h"

namespace kcf::server {
namespace {

std::string number(double value) {
  return fmt::format("{:.6g}", value);
}

/// A word of English for a count.
std::string counted(std::size_t count, std::string_view noun) {
  return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::string seriesSummary(std::string_view text) {
  const Series series = readSeries(text);
  if (series.size() == 0) {
    return "The file has no rows of numbers.";
  }
  std::string summary =
      fmt::format("The file has {} of {}, from {} to {}.", counted(series.size(), "row"),
                  counted(series.columns.size(), "number"), number(series.columns[0].front()),
                  number(series.columns[0].back()));
  for (std::size_t i = 1; i < series.columns.size(); ++i) {
    const auto [low, high] =
        std::minmax_element(series.columns[i].begin(), series.columns[i].end());
    summary += fmt::format("\n- column {}: {} to {}", i + 1, number(*low), number(*high));
  }
  if (series.oddLine != 0) {
    summary += fmt::format("\n- line {} is not such a row", series.oddLine);
  }
  return summary;
}

/// Where the names of node strings stand.
std::vector<MeshName> stringsOf(std::string_view text, const Kestrix::Mesh& mesh) {
  std::vector<MeshName> names;
  std::size_t line = 0;
  std::size_t counted = 0;
  for (const Kestrix::MeshString& string : mesh.strings) {
    if (string.name.empty()) {
      continue;
    }
    const std::size_t end = std::min(text.find('\n', string.place), text.size());
    const std::size_t at = text.substr(0, end).rfind(string.name);
    if (at == std::string_view::npos || at < string.place) {
      continue;
    }
    line += static_cast<std::size_t>(
        std::count(text.begin() + static_cast<std::ptrdiff_t>(counted),
                   text.begin() + static_cast<std::ptrdiff_t>(string.place), '\n'));
    counted = string.place;
    names.push_back({string.name, line, at - string.place});
  }
  return names;
}

FileFacts meshFacts(std::string_view text) {
  const Kestrix::Mesh mesh = Kestrix::readMesh(text);
  const std::set<std::int32_t> materials(mesh.materials.begin(), mesh.materials.end());
  FileFacts facts{true,
                  fmt::format("The mesh has {}, {} of {}.", counted(mesh.nodeIds.size(), "node"),
                              counted(mesh.elementIds.size(), "element"),
                              counted(materials.size(), "material")),
                  stringsOf(text, mesh)};
  if (!mesh.nodes.empty()) {
    const auto [low, high] =
        std::minmax_element(mesh.nodes.begin(), mesh.nodes.end(),
                            [](const auto& a, const auto& b) { return a[2] < b[2]; });
    facts.summary +=
        fmt::format("\n- elevations: {} to {} m", number((*low)[2]), number((*high)[2]));
  }
  std::vector<std::string> names;
  for (const MeshName& string : facts.strings) {
    names.push_back(string.name);
  }
  if (!names.empty()) {
    facts.summary += fmt::format("\n- node strings: {}", KESTparse::quotedList(names));
  }
  return facts;
}

FileFacts factsOf(const std::filesystem::path& path, bool isMesh) {
  const std::string extension = path.extension().string();
  const bool isText = extension == ".txt" || extension == ".dat" || extension == ".csv";
  if (!isMesh && !isText) {
    return {true, "", {}};
  }
  const KESTparse::FileText text = KESTparse::readFile(path.string());
  if (!text.wasRead) {
    return {};
  }
  return isMesh ? meshFacts(text.content) : FileFacts{true, seriesSummary(text.content), {}};
}

}  // namespace

FileFacts FileFactsMemory::read(const std::filesystem::path& path, bool isMesh) {
  std::error_code fault;
  const auto changed = std::filesystem::last_write_time(path, fault);
  const bool isFile = !fault && std::filesystem::is_regular_file(path, fault);
  const std::uintmax_t size = isFile ? std::filesystem::file_size(path, fault) : 0;
  if (!isFile || fault) {
    return {};
  }
  const std::lock_guard lock(mutex_);
  const auto known = entries_.find({path, isMesh});
  if (known != entries_.end() && known->second.changed == changed && known->second.size == size) {
    return known->second.facts;
  }
  FileFacts facts = factsOf(path, isMesh);
  constexpr std::size_t mostKept = 200;
  if (entries_.size() >= mostKept) {
    entries_.clear();
  }
  entries_[{path, isMesh}] = {changed, size, facts};
  return facts;
}

}  // namespace kcf::server
