/// \file
/// The page that shows a setup before it runs.
#pragma once

#include "Verb.h"

namespace kcf {

/// Writes the page.
Verb previewVerb();

}  // namespace kcf
