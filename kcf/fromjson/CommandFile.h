/// \file
/// A document written back as a command file.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace KESTparse {
class KestrixInputRoot;
}  // namespace KESTparse

namespace kcf {

/// What is wrong with a document, and where: `pointer` is a JSON pointer.
class DocumentFault : public std::runtime_error {
 public:
  DocumentFault(std::string at, const std::string& reason)
      : std::runtime_error(reason), pointer(std::move(at)) {}

  std::string pointer;
};

/// How a command file is written.
struct WritingOptions {
  bool isMinimal = false;           ///< leaves out what equals its default
  std::set<std::string> kept = {};  ///< pointers of what is written all the same
  bool hasGeometryBehind = false;   ///< meshes behind all else of their regions
};

/// A command file, not yet in the one style.
struct WrittenFile {
  std::string text;
  std::vector<std::string> pointers;  ///< of its blocks and tags, in the order of the text
};

/// Writes `document` with the blocks and tags of `schema`. Throws a `DocumentFault` where a key is
/// unknown, where a value is of another type than that of its tag, and where it is a text that no
/// command file can spell.
WrittenFile written(const nlohmann::json& document, const KESTparse::KestrixInputRoot& schema,
                    const WritingOptions& options);

}  // namespace kcf
