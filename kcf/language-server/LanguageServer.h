/// \file
/// The verb that serves editors.
#pragma once

#include "Verb.h"

namespace kcf {

/// Speaks the Language Server Protocol over standard input and output.
Verb languageServerVerb();

}  // namespace kcf
