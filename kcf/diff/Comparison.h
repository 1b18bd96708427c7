/// \file
/// What differs in meaning between two command files.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "KESTparse/document/Document.h"

namespace kcf {

/// A command file that is compared.
struct ComparedFile {
  KESTparse::Document* document;  ///< of which all could be read
  std::string directory;          ///< the folder that names in it count from
};

/// A value of a tag on one side.
struct ComparedValue {
  std::string text;  ///< as it was given, with one blank for any white space
  std::string json;  ///< as it stands in a document
  bool isDefault = false;
};

/// Something that differs. A tag has the values that it has; one that only one side has, has one.
struct Difference {
  enum class Kind { changed, added, removed, reordered };
  Kind kind = Kind::changed;
  bool isBlock = false;
  std::string path;
  std::optional<ComparedValue> before = {};
  std::optional<ComparedValue> after = {};
  std::string unit = {};    ///< with its brackets; empty when there is none
  std::size_t item = 0;     ///< of two lists of one length: the first that differs, from 1
  bool isFile = false;      ///< whether the values name files
  bool isContents = false;  ///< whether both files could be read, and hold something else
};

/// The differences in the order of the schema.
std::vector<Difference> differencesOf(const ComparedFile& before, const ComparedFile& after);

}  // namespace kcf
