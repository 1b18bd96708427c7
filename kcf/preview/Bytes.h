/// \file
/// Bytes on their way into a page.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kcf {

/// `bytes` deflated, with the frame of zlib.
std::vector<std::uint8_t> deflated(std::span<const std::uint8_t> bytes);

/// Appends `bytes` to `text` in base 64.
void appendBase64(std::string& text, std::span<const std::uint8_t> bytes);

/// The SHA-256 of `text`.
std::vector<std::uint8_t> sha256(std::string_view text);

/// `bytes` in lower-case hexadecimal digits.
std::string hex(std::span<const std::uint8_t> bytes);

/// Appends `value` to `bytes`: seven bits a byte, the lowest first, the sign in the lowest bit.
inline void appendInteger(std::vector<std::uint8_t>& bytes, std::int64_t value) {
  auto rest = (static_cast<std::uint64_t>(value) << 1U) ^ static_cast<std::uint64_t>(value >> 63);
  while (rest >= 0x80U) {
    bytes.push_back(static_cast<std::uint8_t>(rest | 0x80U));
    rest >>= 7U;
  }
  bytes.push_back(static_cast<std::uint8_t>(rest));
}

}  // namespace kcf
