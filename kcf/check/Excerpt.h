/// \file
/// Text of files and messages as it may stand on a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "KESTparse/document/SyntaxTree.h"

namespace kcf {

/// `text` without what a terminal would act on: control characters, marks of direction and invalid
/// bytes are shown by signs that stand for them, a tab by blanks.
std::string harmless(std::string_view text);

/// A piece of a line, and how far what matters in it is from its front, in columns of a terminal.
struct Excerpt {
  std::string text;
  std::size_t indent = 0;
  std::size_t width = 1;  ///< of what matters, at least 1
};

/// The part of `line` around `at`, at most `columns` wide; dots stand for what is left out.
Excerpt excerptOf(std::string_view line, KESTparse::Span at, std::size_t columns);

}  // namespace kcf
