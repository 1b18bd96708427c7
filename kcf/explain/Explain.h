/// \file
/// Tells about codes, blocks and tags in the terminal.
#pragma once

#include "Verb.h"

namespace kcf {

Verb explainVerb();

}  // namespace kcf
