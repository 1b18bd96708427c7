/// \file
/// What a value looks like, in words.
#pragma once

#include <string>

namespace KESTparse {
class InputTag;
}

namespace kcf {

/// What a value of the prototype `tag` looks like: its choices or its form, its unit, its range and
/// its default.
std::string remarkOf(const KESTparse::InputTag& tag);

}  // namespace kcf
