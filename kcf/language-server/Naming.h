/// \file
/// Names across blocks and files: where they are given and used, and how they are changed.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "language-server/Snapshot.h"

namespace kcf::server {

/// Where the name at `offset` is given, also in a mesh; or the file that is named there. Null when
/// there is neither.
json definitionOf(Snapshot& file, std::size_t offset);
json referencesOf(Snapshot& file, std::size_t offset, bool withDefinitions);
json highlightsOf(Snapshot& file, std::size_t offset);
/// The range of the name that can be changed; null when there is none.
json renamedRange(Snapshot& file, std::size_t offset);
/// The edits that give the name at `offset` another one, also in the mesh that defines it. Throws a
/// `Failure` when it cannot be done whole.
json renameEdits(Snapshot& file, std::size_t offset, const std::string& fresh);
/// In words, what uses the name at `offset`; empty for what is no name.
std::string usesOf(Snapshot& file, std::size_t offset);
/// Adds the names that a file gives, of those that hold `query`.
void addSymbols(Snapshot& file, const std::string& query, json& symbols);

}  // namespace kcf::server
