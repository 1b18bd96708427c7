/// \file
/// The verb that changes command files.
#pragma once

#include "Verb.h"

namespace kcf {

/// Gives tags of a command file values, or writes a command file for each row of a table.
Verb setVerb();

}  // namespace kcf
