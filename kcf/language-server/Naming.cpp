#include "language-server/Naming.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <system_error>

#include "KESTparse/framework/Scanner.h"
#include "language-server/Dispatcher.h"

namespace kcf::server {

using KESTparse::NodeId;

namespace {

/// A name of a mesh, and the mesh.
struct InMesh {
  std::string path;
  MeshName name;
};

/// The mesh of the region that a node stands in; empty when it names none.
std::string meshPath(Snapshot& file, NodeId node) {
  const std::string mesh = file.names().meshOf(node);
  return mesh.empty()
             ? mesh
             : std::filesystem::absolute(std::filesystem::path(file.origin().directory) / mesh)
                   .lexically_normal()
                   .string();
}

/// Where the meshes of regions define the name that stands at `places`.
std::vector<InMesh> inMeshes(Snapshot& file, const std::vector<const NamePlace*>& places) {
  std::vector<InMesh> found;
  for (const NamePlace* place : places) {
    const std::string path = place->isNodeString ? meshPath(file, place->tag) : std::string();
    if (path.empty()) {
      continue;
    }
    for (const MeshName& each : file.session().files.ofMesh(path).strings) {
      if (each.name == place->at.in(file.tree().text())) {
        found.push_back({path, each});
      }
    }
  }
  return found;
}

/// Refuses to rename what a mesh may define that cannot be looked into.
void requireMeshes(Snapshot& file, const std::vector<const NamePlace*>& places) {
  for (const NamePlace* place : places) {
    const std::string path = place->isNodeString ? meshPath(file, place->tag) : std::string();
    if (!path.empty() && !file.session().files.ofMesh(path).exists) {
      throw Failure{errors::requestFailed,
                    fmt::format("the mesh '{}' may define '{}', too, and cannot be read", path,
                                place->at.in(file.tree().text()))};
    }
  }
}

json rangeIn(const MeshName& name) {
  // Meshes are plain letters: all encodings count alike.
  return {{"start", jsonOf({name.line, name.begin})},
          {"end", jsonOf({name.line, name.begin + name.name.size()})}};
}

json lineStart(const std::string& path) {
  return {{"uri", uriOfPath(std::filesystem::absolute(path).string())},
          {"range", {{"start", jsonOf({0, 0})}, {"end", jsonOf({0, 0})}}}};
}

bool isWritable(const std::string& path) {
  return std::ofstream(path, std::ios::in | std::ios::out).good();
}

}  // namespace

json definitionOf(Snapshot& file, std::size_t offset) {
  const NamePlace* const name = file.names().at(offset);
  json locations = json::array();
  if (name != nullptr) {
    const std::vector<const NamePlace*> same = file.names().sameAs(*name);
    for (const NamePlace* each : same) {
      if (each->isDefinition && each != name) {
        locations.push_back(file.locationOf(each->at));
      }
    }
    if (locations.empty()) {
      for (const InMesh& each : inMeshes(file, same)) {
        locations.push_back({{"uri", uriOfPath(each.path)}, {"range", rangeIn(each.name)}});
      }
    }
    if (locations.empty() && name->isDefinition) {
      locations.push_back(file.locationOf(name->at));
    }
  } else {
    const std::string path = file.fileOf(file.nodeAround(offset));
    std::error_code none;
    if (!path.empty() && std::filesystem::is_regular_file(path, none)) {
      locations.push_back(lineStart(path));
    }
  }
  return locations.empty() ? json() : locations;
}

json referencesOf(Snapshot& file, std::size_t offset, bool withDefinitions) {
  const NamePlace* const name = file.names().at(offset);
  if (name == nullptr) {
    return nullptr;
  }
  json locations = json::array();
  for (const NamePlace* each : file.names().sameAs(*name)) {
    if (withDefinitions || !each->isDefinition) {
      locations.push_back(file.locationOf(each->at));
    }
  }
  return locations;
}

json highlightsOf(Snapshot& file, std::size_t offset) {
  constexpr int read = 2;
  constexpr int write = 3;
  const NamePlace* const name = file.names().at(offset);
  if (name == nullptr) {
    return nullptr;
  }
  json highlights = json::array();
  for (const NamePlace* each : file.names().sameAs(*name)) {
    highlights.push_back(
        {{"range", file.rangeOf(each->at)}, {"kind", each->isDefinition ? write : read}});
  }
  return highlights;
}

json renamedRange(Snapshot& file, std::size_t offset) {
  const NamePlace* const name = file.names().at(offset);
  if (name == nullptr) {
    return nullptr;
  }
  return {{"range", file.rangeOf(name->at)}, {"placeholder", name->at.in(file.tree().text())}};
}

json renameEdits(Snapshot& file, std::size_t offset, const std::string& fresh) {
  const NamePlace* const name = file.names().at(offset);
  if (name == nullptr) {
    throw Failure{errors::requestFailed, "there is no name here that other blocks use"};
  }
  if (!KESTparse::isWritableName(fresh)) {
    throw Failure{errors::requestFailed,
                  fmt::format("'{}' is no name: a name has letters, digits, '_' and '-'", fresh)};
  }
  const std::vector<const NamePlace*> same = file.names().sameAs(*name);
  std::vector<KESTparse::Edit> edits;
  edits.reserve(same.size());
  for (const NamePlace* each : same) {
    edits.push_back({each->at, fresh});
  }
  requireMeshes(file, same);
  std::map<std::string, json> meshes;
  for (const InMesh& each : inMeshes(file, same)) {
    if (!isWritable(each.path)) {
      throw Failure{errors::requestFailed,
                    fmt::format("the mesh '{}' defines '{}', too, and cannot be written", each.path,
                                each.name.name)};
    }
    for (const MeshName& other : file.session().files.ofMesh(each.path).strings) {
      if (other.name == fresh) {
        throw Failure{
            errors::requestFailed,
            fmt::format("the mesh '{}' has a node string '{}' already", each.path, fresh)};
      }
    }
    json& inMesh = meshes[uriOfPath(each.path)];
    json edit{{"range", rangeIn(each.name)}, {"newText", fresh}};
    // Several regions may share a mesh.
    if (std::find(inMesh.begin(), inMesh.end(), edit) == inMesh.end()) {
      inMesh.push_back(std::move(edit));
    }
  }
  json changes{{file.origin().uri, file.editsOf(edits)}};
  for (auto& [uri, list] : meshes) {
    changes[uri] = std::move(list);
  }
  if (!file.session().takesVersionedEdits) {
    return {{"changes", std::move(changes)}};
  }
  json documents = json::array();
  for (const auto& [uri, list] : changes.items()) {
    const bool isThis = uri == file.origin().uri && file.origin().version.has_value();
    documents.push_back(
        {{"textDocument",
          {{"uri", uri}, {"version", isThis ? json(*file.origin().version) : json()}}},
         {"edits", std::move(list)}});
  }
  return {{"documentChanges", std::move(documents)}};
}

std::string usesOf(Snapshot& file, std::size_t offset) {
  const NamePlace* const name = file.names().at(offset);
  if (name == nullptr) {
    return {};
  }
  constexpr std::size_t most = 10;
  std::string text;
  std::size_t count = 0;
  for (const NamePlace* each : file.names().sameAs(*name)) {
    if (each == name) {
      continue;
    }
    if (++count > most) {
      continue;
    }
    const json at = file.positionOf(each->at.begin);
    text += fmt::format("\n- {} `{}` of {}, line {}", each->isDefinition ? "given by" : "used by",
                        file.nameOf(each->tag), file.nameOf(file.tree()[each->tag].parent),
                        at.at("line").get<std::size_t>() + 1);
  }
  if (count > most) {
    text += fmt::format("\n- and {} more", count - most);
  }
  for (const InMesh& each : inMeshes(file, {name})) {
    text += fmt::format("\n- a node string of {}, line {}",
                        std::filesystem::path(each.path).filename().string(), each.name.line + 1);
  }
  const std::string_view written = name->at.in(file.tree().text());
  return text.empty() ? fmt::format("Nothing else names `{}`.", written)
                      : fmt::format("`{}` is\n{}", written, text);
}

void addSymbols(Snapshot& file, const std::string& query, json& symbols) {
  constexpr int symbolKind = 13;
  for (const NamePlace& place : file.names().all()) {
    const std::string_view name = place.at.in(file.tree().text());
    if (place.isDefinition && name.find(query) != std::string_view::npos) {
      symbols.push_back({{"name", name},
                         {"kind", symbolKind},
                         {"containerName", file.nameOf(file.tree()[place.tag].parent)},
                         {"location", file.locationOf(place.at)}});
    }
  }
}

}  // namespace kcf::server
