/// \file
/// What a misspelt name was meant to be.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace KESTparse {

/// The least number of characters to insert, remove, replace or swap with their neighbour that make
/// `b` of `a`. The search ends where the number exceeds `limit`; the result is then greater.
std::size_t editDistance(std::string_view a, std::string_view b,
                         std::size_t limit = static_cast<std::size_t>(-1));

/// The name among `known` that `written` was most likely meant to be: one that differs in letter
/// case only, else the one at the least distance of at most a third of its length, else one of the
/// same words in another order. Empty when there is none.
std::string_view nearestName(std::string_view written, const std::vector<std::string_view>& known);

/// The same among names that a user gave. Where several differ in their numbers alone and are as
/// near, as "km_0.2" and "km_0.4" are to "km_0.3", none is.
std::string_view nearestGivenName(std::string_view written,
                                  const std::vector<std::string_view>& known);

/// `name` without the quotes around it, if there are any.
std::string_view withoutQuotes(std::string_view name);

/// What a help appends where it asks for one of `known` names: " (perhaps 'x')" with the one that
/// `written` was most likely meant to be, or nothing.
std::string perhaps(std::string_view written, const std::vector<std::string_view>& known);

/// The one name among `known` that `written` shortens: each of its words begins one of the name, in
/// the same order, as "elem_ids" and "total_time" do for "element_ids" and "total_run_time". Empty
/// when there is none, or several.
std::string_view longerName(std::string_view written, const std::vector<std::string_view>& known);

}  // namespace KESTparse
