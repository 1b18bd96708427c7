/// \file
/// The command files that a verb works on.
#pragma once

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

/// The text of a file, of a pipe, or of standard input. Throws a `std::runtime_error` that says why
/// it cannot be read.
std::string readCommandFile(const std::string& path);

/// Puts `after` in the place of the file at `path`. Throws a `std::runtime_error` when it cannot be
/// written, or does not hold `before` any more: what someone else wrote is not lost.
void replaceCommandFile(const std::string& path, const std::string& before,
                        const std::string& after);

}  // namespace kcf
