/// \file
/// Values that the converter takes, and that are hardly meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KESTparse {

class InputBlock;
class InputTag;

/// A value that is hardly meant.
struct UnusualValue {
  const InputTag* tag = nullptr;
  std::size_t item = 0;             ///< of a list, counted from 1; 0 for all of the value
  const InputTag* other = nullptr;  ///< whose value it does not fit; null for none
  std::string message;
  std::string help;
};

/// Looks at the values of a block.
using UnusualCheck = std::vector<UnusualValue> (*)(const InputBlock& block);

/// What looks at blocks with that keyword; null for those whose values are not looked at.
UnusualCheck unusualCheckOf(std::string_view keyword);

}  // namespace KESTparse
