/// \file
/// What can be written where someone types.
#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "KESTparse/vocabulary/Places.h"
#include "language-server/Cursor.h"
#include "language-server/Snapshot.h"

namespace kcf::server {

/// A place that completion is asked for.
struct Typing {
  const Session* session = nullptr;
  Cursor cursor;
  json range;                           ///< of the word, which is replaced
  std::string item;                     ///< the word as it is written so far
  std::shared_ptr<Snapshot> file = {};  ///< read before, perhaps of an older text; may be null
  std::string directory = {};           ///< that names of files count from
};

/// The place in the schema of the innermost block; null where it is unknown.
KESTparse::Place placeOf(const Typing& typing);
/// The prototype of the tag whose value is written; null where it is unknown.
const KESTparse::InputTag* tagOf(const Typing& typing);

/// Whether answering takes looking into files.
bool needsFiles(const Typing& typing);
/// The items, the likeliest first.
json complete(const Typing& typing);
/// The documentation of an item of `complete`.
json resolved(const Session& session, json item);

}  // namespace kcf::server
