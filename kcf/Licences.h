/// \file
/// The licences of the libraries that are part of the programs.
#pragma once

#include <string_view>

namespace kcf {

/// One below the other, each under the name of its package.
std::string_view licences();

}  // namespace kcf
