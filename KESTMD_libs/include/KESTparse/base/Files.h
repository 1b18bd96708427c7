/// \file
/// The files that a command file names.
#pragma once

#include <string>

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

/// The node strings of the mesh file at `path`. A mesh that could be read is read once for the
/// process. An assertion when it cannot be opened; the exceptions of `std::stoi` for a node id that
/// is no number of its type.
const NodeStrings& meshNodeStrings(const std::string& path);

}  // namespace KESTparse
