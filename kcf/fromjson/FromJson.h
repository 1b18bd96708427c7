/// \file
/// The verb that makes a command file of a document.
#pragma once

#include "Verb.h"

namespace kcf {

/// Writes the command file that converts to a document.
Verb fromJsonVerb();

}  // namespace kcf
