/// \file
/// Texts within markup.
#pragma once

#include <string>
#include <string_view>

namespace kcf {

/// `text` as it stands in HTML or XML, between elements or in an attribute.
std::string escaped(std::string_view text);

}  // namespace kcf
