/// \file
/// What only the checker finds: names that lead nowhere, and what is wrong in files.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/document/Diagnostic.h"

namespace KESTparse {

class Document;
struct CheckedMesh;

/// What was found out of files, by the paths under which they were opened. A host that checks a
/// command file again hands it over, without what has changed meanwhile.
struct CheckedFiles {
  std::map<std::string, std::shared_ptr<const CheckedMesh>, std::less<>> meshes;
  std::set<std::string, std::less<>> plainSeries;  ///< series of nothing but numbers
};

/// Whether a word stands in what could not be read, so that what is named by it may be there.
using WordTest = std::function<bool(std::string_view word)>;

/// Looks behind the names of a document: at what they should lead to in the setup, and into the
/// meshes, series and lists of connections. The values of the document must be active. Each fault
/// of a file is told once, with the tag that names the file first.
std::vector<Diagnostic> findInSetup(const Document& document, bool readsFiles,
                                    const WordTest& wasSkipped, CheckedFiles& known);

}  // namespace KESTparse
