/// \file
/// Texts of the vocabulary as HTML, and where things stand in the manual.
#pragma once

#include <kainjow/mustache.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/vocabulary/Places.h"
#include "Markup.h"

namespace kcf {

/// A template of the pages with its values.
std::string rendered(std::string_view name, const kainjow::mustache::data& values);

/// A text of the schema, with the signs of a printed text.
std::string prose(std::string_view text);

/// A name or a value, which may be broken behind its underscores and slashes.
std::string code(std::string_view text);
std::string breakable(std::string_view text);

/// A unit with its exponents raised: both "^{-1}" and "^(1/3)" are exponents.
std::string unitHtml(std::string_view unit);

/// The names of values with `separator` between them.
std::string codes(const std::vector<std::string>& values, std::string_view separator);

/// The page of a block.
std::string pageOf(const KESTparse::Place& place);
/// The anchor of a tag on the page of its block.
std::string anchorOf(std::string_view tag);
/// The anchor of a name in the index of all tags.
std::string nameAnchor(std::string_view tag);
/// A link to a tag on the same page.
std::string tagLink(std::string_view tag);

/// A heading's anchor: its words in lower case with dashes between them.
std::string slug(std::string_view heading);

}  // namespace kcf
