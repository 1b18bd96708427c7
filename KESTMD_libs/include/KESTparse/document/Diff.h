/// \file
/// What differs between two texts, line by line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/document/Diagnostic.h"

namespace KESTparse {

/// Lines that stand in place of others; lines count from 0, the end is excluded.
struct LineChange {
  Span before;
  Span after;
};

/// The changes that make `after` of `before`, in order. They are few, but not always the fewest:
/// time and memory are linear in the texts.
std::vector<LineChange> changedLines(std::string_view before, std::string_view after);

/// The same changes as edits of the bytes of `before`.
std::vector<Edit> changeEdits(std::string_view before, std::string_view after);

/// A unified diff with three lines of context; empty when the texts are equal.
std::string unifiedDiff(std::string_view before, std::string_view after,
                        std::string_view nameBefore, std::string_view nameAfter);

}  // namespace KESTparse
