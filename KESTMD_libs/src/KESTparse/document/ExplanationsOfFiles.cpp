#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "ExplanationWords.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/base/Suggestion.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/document/Explanations.h"

namespace KESTparse {
namespace {

/// What stands at the path of a name of the command file.
enum class Found { nothing, folder, file, unreadable };

/// The one place that looks at the disk by the name that a command file gives.
Found findFile(const std::string& name) {
  const std::string path = openedPath(resolvePath(name));
  std::error_code error;
  if (!GlobalValues::instance().readsFiles) {
    return Found::nothing;
  }
  if (std::filesystem::is_directory(path, error)) {
    return Found::folder;
  }
  if (canOpen(resolvePath(name))) {
    return Found::file;
  }
  return std::filesystem::exists(path, error) ? Found::unreadable : Found::nothing;
}

/// The names in the folder `name` of the command file.
std::vector<std::string> namesIn(const std::string& name) {
  // A search of a full folder would take longer than all else.
  constexpr std::size_t most = 10000;
  std::vector<std::string> names;
  std::error_code error;
  const std::string path = openedPath(resolvePath(name.empty() ? "." : name));
  for (std::filesystem::directory_iterator entry(path, error), end; entry != end && !error;
       entry.increment(error)) {
    names.push_back(entry->path().filename().string());
    if (names.size() > most) {
      return {};
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

/// `name` in the letter case of what exists; empty when that is nothing, or several.
std::string inExistingCase(const std::string& name) {
  std::string found = name.starts_with('/') ? "/" : "";
  for (const std::string& piece : split("/", name)) {
    if (piece == "." || piece == ".." || findFile(found + piece) != Found::nothing) {
      found += piece + "/";
      continue;
    }
    const std::string upper = toUpper(piece);
    std::string match;
    for (const std::string& known : namesIn(found)) {
      if (toUpper(known) == upper) {
        if (!match.empty()) {
          return {};
        }
        match = known;
      }
    }
    if (match.empty()) {
      return {};
    }
    found += match + "/";
  }
  if (found.ends_with('/')) {
    found.pop_back();
  }
  return findFile(found) == Found::file ? found : std::string();
}

/// `name` without quotes and with slashes in place of backslashes.
std::string plainName(std::string_view name) {
  std::string plain(trimmed(name));
  std::erase_if(plain, [](char c) { return c == '"' || c == '\'' || c == '`'; });
  std::replace(plain.begin(), plain.end(), '\\', '/');
  return plain;
}

std::string parentOf(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string::npos ? std::string()
                                    : name.substr(0, std::max<std::size_t>(slash, 1));
}

/// A file of the folder that has a name like `name`; empty when there is none.
std::string similarName(const std::string& name) {
  const std::string folder = parentOf(name);
  const std::string last = name.substr(folder.empty() ? 0 : name.rfind('/') + 1);
  const std::vector<std::string> names = namesIn(folder);
  std::string similar;
  // An ending that was left out.
  for (const std::string& known : names) {
    if (known.starts_with(last + ".")) {
      similar = similar.empty() ? known : std::string();
    }
  }
  if (similar.empty()) {
    similar = nearestName(last, std::vector<std::string_view>(names.begin(), names.end()));
  }
  const std::string whole = folder.empty() ? similar : folder + "/" + similar;
  return !similar.empty() && findFile(whole) == Found::file ? whole : std::string();
}

}  // namespace

MissingFile explainMissingFile(std::string_view name) {
  const std::string written(name);
  const std::string quoted = quotedText(name);
  switch (findFile(written)) {
    case Found::folder:
      return {code::missingFile, fmt::format("{} is a folder and no file", quoted),
              "write the name of a file in it"};
    case Found::unreadable:
      return {code::unreadableFile, fmt::format("the file {} cannot be read", quoted),
              "allow yourself to read it, or name another file"};
    default:
      break;
  }
  const std::string plain = plainName(name);
  const std::string existing = plain.empty() ? std::string() : inExistingCase(plain);
  const std::string folder = parentOf(plain);
  if (plain != written) {
    const bool isQuoted = written.find_first_of("\"'`") != std::string::npos;
    MissingFile missing{
        code::missingFile,
        isQuoted
            ? fmt::format("the file name {} stands in quotes, which count as part of it", quoted)
            : fmt::format("the file name {} has backslashes, but folders are separated by '/'",
                          quoted),
        fmt::format("write {}", quotedText(existing.empty() ? plain : existing)), existing};
    return missing;
  }
  if (!existing.empty()) {
    return {code::missingFile,
            fmt::format("the file {} does not exist, but {} does", quoted, quotedText(existing)),
            fmt::format("write {}: small and capital letters differ in names of files",
                        quotedText(existing)),
            existing};
  }
  const std::size_t end = plain.find_first_of(",; \t");
  const std::string first = plain.substr(0, end);
  if (end != std::string::npos && findFile(first) == Found::file) {
    const std::string rest = plain.substr(end);
    const bool isSign = rest.find_first_not_of(",; \t") == std::string::npos;
    return {code::missingFile,
            fmt::format("{} stands behind the name of the file {}, and counts as part of it",
                        quotedText(trimmed(rest)), quotedText(first)),
            isSign ? fmt::format("write {}", quotedText(first))
                   : fmt::format("write one name, such as {}", quotedText(first)),
            isSign ? first : std::string()};
  }
  MissingFile missing{code::missingFile, fmt::format("the file {} does not exist", quoted), {}};
  if (!folder.empty() && findFile(folder) != Found::folder) {
    missing.help = fmt::format(
        "create the folder {} with the file in it, or write where the file is", quotedText(folder));
    return missing;
  }
  const std::string similar = similarName(plain);
  missing.help = similar.empty()
                     ? std::string(
                           "put the file there, or write the name of one that exists; names count "
                           "from the folder in which the converter is started")
                     : fmt::format("write {} if that file is meant, or put {} beside it",
                                   quotedText(similar), quoted);
  return missing;
}

}  // namespace KESTparse
