/// \file
/// The name of a class member, taken from the member itself so that it is written once.
#pragma once

#include <string_view>

namespace KESTparse {

/// The name of the member that `Member` points to: "stringdef_ptrV" for
/// `&IRgeom2d::stringdef_ptrV`. The compiler's name of this very function ends in it.
template <auto Member>
consteval std::string_view memberName() {
  const std::string_view name = __PRETTY_FUNCTION__;
  const std::size_t begin = name.find("Member = ");
  const std::size_t end = name.find_first_of(";]", begin);
  const std::size_t colon = name.rfind(':', end);
  return name.substr(colon + 1, end - colon - 1);
}

}  // namespace KESTparse
