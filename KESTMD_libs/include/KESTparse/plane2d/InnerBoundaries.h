/// \file
/// What the rules of hydraulic and of bedload inner boundaries share: both stand between two
/// strings.
#pragma once

#include <string>

#include "KESTparse/framework/RuleMessage.h"

namespace KESTparse {

/// The tag by which the inner boundary `block` names the string `name`.
template <class Block>
Subject sideNamed(const Block& block, const std::string& name) {
  return block.string_name1 == name ? about<&Block::string_name1>(block)
                                    : about<&Block::string_name2>(block);
}

/// Reports to `parent` that two inner boundaries stand on the same string. `text` is the
/// converter's; it may show `shown`.
template <class Block>
void reportSharedSide(InputBlock& parent, const Block& earlier, const Block& later,
                      fmt::format_string<const std::string&, const std::string&> text,
                      const std::string& shown) {
  const bool byFirst =
      earlier.string_name1 == later.string_name1 || earlier.string_name1 == later.string_name2;
  const std::string& name = byFirst ? earlier.string_name1 : earlier.string_name2;
  report(Severity::error, parent, {sideNamed(later, name), sideNamed(earlier, name)},
         {"shared-inner-string", "two INNER_BOUNDARY blocks stand on the string '{1}'",
          "give each INNER_BOUNDARY two strings of its own"},
         text, shown, name);
}

}  // namespace KESTparse
