/// \file
/// The verb that tells what differs between two command files.
#pragma once

#include "Verb.h"

namespace kcf {

/// Compares what two command files mean, whatever they look like.
Verb diffVerb();

}  // namespace kcf
