#include "Assets.h"

#include <string>

#include "KESTparse/base/Assert.h"

namespace kcf {

std::string_view asset(std::string_view name) {
  for (const Asset& each : assets()) {
    if (each.name == name) {
      return each.content;
    }
  }
  ASSERT(false, "the program carries no file '" + std::string(name) + "'");
  return {};
}

std::vector<const Asset*> assetsIn(std::string_view folder) {
  std::vector<const Asset*> found;
  for (const Asset& each : assets()) {
    if (each.name.starts_with(folder) && each.name.substr(folder.size()).starts_with('/')) {
      found.push_back(&each);
    }
  }
  return found;
}

}  // namespace kcf
