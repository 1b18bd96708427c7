/// \file
/// Changes of command files that were asked for, and what they break.
#pragma once

#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KESTparse/document/Document.h"

namespace kcf {

/// A tag and the value that it is to get.
struct Change {
  std::string path;
  std::string value;
};

/// The change that `PATH=VALUE` asks for. Throws a `UsageError` for any other text.
Change changeOf(std::string_view argument);

/// Tells what is wrong with a command file that was not wrong with the one it was made of.
class Judge {
 public:
  /// \param original the text before.
  /// \param directory the folder that names in both count from.
  Judge(std::string original, std::string directory, const KESTparse::KestrixInputRoot& schema)
      : original_(std::move(original)), directory_(std::move(directory)), schema_(&schema) {}

  [[nodiscard]] KESTparse::Document read(std::string text) const {
    return {std::move(text), *schema_, {.directory = directory_}};
  }
  /// The diagnostics of `changed` that the original does not have. May be asked by several threads.
  std::vector<KESTparse::Diagnostic> broken(KESTparse::Document& changed);

 private:
  using Told = std::multiset<std::pair<std::string, std::string>>;  // codes and messages

  std::string original_;
  std::string directory_;
  const KESTparse::KestrixInputRoot* schema_;
  std::mutex mutex_;
  std::optional<Told> told_;  // of the original, once it matters
};

/// Whether there is an error among `diagnostics`.
bool haveError(const std::vector<KESTparse::Diagnostic>& diagnostics);

/// The diagnostics as lines for people, each behind `indent`.
std::string linesOf(const std::vector<KESTparse::Diagnostic>& diagnostics, std::string_view indent);

}  // namespace kcf
