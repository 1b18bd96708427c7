/// \file
/// Formats command files.
#pragma once

#include "Verb.h"

namespace kcf {

Verb formatVerb();

}  // namespace kcf
