/// \file
/// Numbers as nearly all files write them, read faster than the library reads any number.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace KESTparse {

/// Takes digits from `here` on, which moves behind them, and puts them behind those of `value`.
inline std::uint64_t takeDigits(const char*& here, const char* end, std::uint64_t value = 0) {
  constexpr unsigned base = 10;
  while (here != end && static_cast<unsigned char>(*here - '0') < base) {
    value = value * base + static_cast<unsigned char>(*here++ - '0');
  }
  return value;
}

/// Reads up to nine digits into `value`.
/// \return what stands behind them, where a caller makes sure that the number ends; null for
///         anything else, which `std::from_chars` may be able to read.
inline const char* readPlainNumber(const char* begin, const char* end, std::int32_t& value) {
  const char* here = begin;
  const std::uint64_t digits = takeDigits(here, end);
  constexpr std::ptrdiff_t most = 9;
  if (here == begin || here - begin > most) {
    return nullptr;
  }
  value = static_cast<std::int32_t>(digits);
  return here;
}

/// The same for up to 15 digits with a sign and a point, which gives the nearest number.
inline const char* readPlainNumber(const char* begin, const char* end, double& value) {
  const bool isNegative = begin != end && *begin == '-';
  const char* const first = begin + (isNegative ? 1 : 0);
  const char* here = first;
  std::uint64_t digits = takeDigits(here, end);
  std::size_t decimals = 0;
  if (here != first && here != end && *here == '.') {
    const char* const point = ++here;
    digits = takeDigits(here, end, digits);
    decimals = static_cast<std::size_t>(here - point);
  }
  constexpr std::ptrdiff_t most = 15;
  if (here == first || here - first > most) {
    return nullptr;
  }
  // So few digits and the power of ten are exact, and their quotient is rounded once.
  constexpr std::array powers{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6, 1e7,
                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14};
  const double size = static_cast<double>(digits) / powers[decimals];
  value = isNegative ? -size : size;
  return here;
}

}  // namespace KESTparse
