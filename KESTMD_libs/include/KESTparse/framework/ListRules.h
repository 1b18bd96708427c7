/// \file
/// What rules say of lists that belong together.
#pragma once

#include "KESTparse/framework/RuleMessage.h"

namespace KESTparse {

/// Reports to `block` that the list `Values` has not one item for each material index of the list
/// `Indices`; `text` is the converter's. The tags are called as their members.
template <auto Values, auto Indices, class Block>
void reportIndexCount(Block& block, fmt::format_string<const std::string_view&, const std::size_t&,
                                                       const std::string_view&, const std::size_t&>
                                        text) {
  report(Severity::error, block, {about<Values>(block), about<Indices>(block)},
         {"index-count",
          "the lists '{0}' and '{2}' differ in length: values {1}, material indices {3}",
          "give as many values in '{0}' as material indices in '{2}'"},
         text, memberName<Values>(), (block.*Values).size(), memberName<Indices>(),
         (block.*Indices).size());
}

}  // namespace KESTparse
