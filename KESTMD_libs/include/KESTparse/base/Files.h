/// \file
/// Files, read and replaced whole.
#pragma once

#include <string>
#include <string_view>

#include "KESTparse/base/GlobalValues.h"

namespace KESTparse {

/// Stops where files are not read. All that looks into a file asks it first.
void requireReading();

/// What a file holds.
struct FileText {
  bool wasRead = false;  ///< false when it cannot be opened or read, or is a folder
  std::string content;
};

/// Reads a file whole.
FileText readFile(const std::string& path);

/// Puts `content` in place of what the file at `path` holds: whole or not at all, also when the
/// machine stops meanwhile. Links stay, and so do permissions and, where that is allowed, the
/// owner. A pipe or a device stays, too, and is written into. Throws a `std::system_error` when it
/// cannot be done; the file is then what it was.
void replaceFile(const std::string& path, std::string_view content);

/// Makes a file that holds `content`: whole or not at all, but without waiting for the disk, since
/// nothing was there that could be lost. Throws a `std::system_error` when it
/// cannot be done, `std::errc::file_exists` when there is something at `path` already.
void createFile(const std::string& path, std::string_view content);

/// The node strings of the mesh file at `path`. A mesh that could be read is read once for the
/// process. An assertion when it cannot be opened; the exceptions of `std::stoi` for a node id that
/// is no number of its type.
const NodeStrings& meshNodeStrings(const std::string& path);

}  // namespace KESTparse
