/// \file
/// The command files that a verb works on.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kcf {

/// How standard input is named on the command line.
inline constexpr const char* standardInput = "-";

/// `path` as it is told to the user: with `/`, without a leading `./`.
std::string shownPath(const std::string& path);

/// The command files that the paths on a command line stand for: files and `-` themselves, folders
/// for all `*.kcf` below them in the order of their names. Each is there once.
struct CommandFiles {
  std::vector<std::string> paths;
  std::vector<std::string> faults;  ///< what cannot be read, one sentence each
};

CommandFiles findCommandFiles(const std::vector<std::string>& paths);

/// The text of a file, or of standard input; nothing when it cannot be read.
std::optional<std::string> readCommandFile(const std::string& path);

}  // namespace kcf
