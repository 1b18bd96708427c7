/// \file
/// Tells what is wrong with command files.
#pragma once

#include "Verb.h"

namespace kcf {

Verb checkVerb();

}  // namespace kcf
