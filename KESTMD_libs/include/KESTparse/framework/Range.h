/// \file
/// The interval in which a number must lie.
#pragma once

#include <string>

namespace KESTparse {

/// An interval with bounds that may be missing, and each of which may belong to it or not.
template <typename T>
struct Range {
  bool hasLower = false;
  bool lowerInclusive = false;
  bool hasUpper = false;
  bool upperInclusive = false;
  T lower{};
  T upper{};

  Range() = default;
  Range(bool hasLowerBound, bool isLowerInclusive, bool hasUpperBound, bool isUpperInclusive,
        T lowerBound, T upperBound)
      : hasLower(hasLowerBound),
        lowerInclusive(isLowerInclusive),
        hasUpper(hasUpperBound),
        upperInclusive(isUpperInclusive),
        lower(lowerBound),
        upper(upperBound) {}

  /// Whether any bound exists.
  [[nodiscard]] bool restricts() const { return hasLower || hasUpper; }

  /// Whether `value` lies within the bounds.
  [[nodiscard]] bool contains(T value) const {
    if (hasLower && value <= lower && (value < lower || !lowerInclusive)) {
      return false;
    }
    return !(hasUpper && value >= upper && (value > upper || !upperInclusive));
  }

  /// The range with `x` for the value and the comparison signs as HTML entities, such as
  /// "0 &lt;= x &lt; 1"; empty without bounds.
  [[nodiscard]] std::string describe() const;
};

}  // namespace KESTparse
