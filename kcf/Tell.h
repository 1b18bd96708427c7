/// \file
/// What a verb tells its user beside its results.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace kcf {

/// Writes lines to standard error, without what a terminal would act on. The last line end may be
/// left out.
void tell(std::string_view lines);

/// Why a step failed, in words.
std::string reasonOf(const std::exception& fault);

}  // namespace kcf
