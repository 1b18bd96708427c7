/// \file
/// Applies the certain fixes to a command file.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "KESTparse/document/Document.h"

namespace kcf {

/// What came of a text.
struct Mended {
  std::unique_ptr<KESTparse::Document> document;  ///< of the mended text
  std::vector<std::string> done;  ///< what was done, such as "2:3: write 'title' [unknown-tag]"
};

/// Makes a document of a text.
using ReadText = std::function<std::unique_ptr<KESTparse::Document>(std::string text)>;

/// Applies the fixes that do not touch each other, and checks again until none is left. A fix that
/// does not leave less to be told is not applied.
Mended mend(std::string text, const ReadText& read);

}  // namespace kcf
