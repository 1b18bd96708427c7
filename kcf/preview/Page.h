/// \file
/// The page that shows a setup.
#pragma once

#include <string>

#include "preview/Model.h"

namespace kcf {

/// The page, which needs no server and no other file. With a `stamp` it looks for a newer one in
/// the script `stampName` beside it.
std::string pageOf(const Model& model, const std::string& stampName, const std::string& stamp);

}  // namespace kcf
