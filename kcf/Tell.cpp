#include "Tell.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <new>

#include "check/Excerpt.h"

namespace kcf {

void tell(std::string_view lines) {
  std::string shown;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    shown += harmless(lines.substr(0, end)) + "\n";
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
  std::cerr << shown << std::flush;
}

std::string reasonOf(const std::exception& fault) {
  if (dynamic_cast<const std::bad_alloc*>(&fault) != nullptr) {
    return "there is not enough memory";
  }
  if (const auto* file = dynamic_cast<const std::filesystem::filesystem_error*>(&fault)) {
    return fmt::format("'{}' cannot be reached: {}", file->path1().string(),
                       file->code().message());
  }
  return fault.what();
}

}  // namespace kcf
