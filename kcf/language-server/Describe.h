/// \file
/// What the manual says of blocks, tags and choices, as Markdown.
#pragma once

#include <string>

#include "KESTparse/vocabulary/Places.h"
#include "vocabulary/Supplement.h"

namespace KESTparse {
class InputTag;
}

namespace kcf::server {

std::string describeBlock(const KESTparse::Place& place);
std::string describeTag(const KESTparse::Place& place, const KESTparse::InputTag& tag,
                        const Supplement& supplement);
/// What a choice of a tag means; empty where that is not told.
std::string describeChoice(const KESTparse::Place& place, const KESTparse::InputTag& tag,
                           const std::string& choice, const Supplement& supplement);

}  // namespace kcf::server
