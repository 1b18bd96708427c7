/// \file
/// The files that a verb writes.
#pragma once

#include <string>
#include <string_view>

namespace kcf {

/// Writes a file whole or not at all; into a pipe or a device, which is never replaced, it writes
/// as it comes. A file may only be there already where `mayReplace` is set. Throws a
/// `std::runtime_error` that says why it cannot be.
void writeFile(const std::string& path, std::string_view content, bool mayReplace);

}  // namespace kcf
