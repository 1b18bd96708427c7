/// \file
/// The files that the program carries: what the manual is made of, and whole setups.
#pragma once

#include <string_view>
#include <vector>

namespace kcf {

struct Asset {
  std::string_view name;  ///< such as "guide/syntax" or "examples/flood-2d/setup.kcf"
  std::string_view content;
};

/// All of them, in the order of their names within each folder. The build writes this function.
const std::vector<Asset>& assets();

/// The content of one that exists.
std::string_view asset(std::string_view name);

/// Those whose names begin with `folder` and a slash.
std::vector<const Asset*> assetsIn(std::string_view folder);

}  // namespace kcf
