#include "preview/Bytes.h"

#include <libdeflate.h>
#include <nettle/sha2.h>

#include <memory>
#include <new>
#include <stdexcept>

namespace kcf {

std::vector<std::uint8_t> deflated(std::span<const std::uint8_t> bytes) {
  constexpr int fast = 1;
  const std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor(
      libdeflate_alloc_compressor(fast), libdeflate_free_compressor);
  if (compressor == nullptr) {
    throw std::bad_alloc();
  }
  // Most of the room that may be needed is not, and costs nothing as long as nothing is put there.
  const std::size_t room = libdeflate_zlib_compress_bound(compressor.get(), bytes.size());
  const auto out = std::make_unique_for_overwrite<std::uint8_t[]>(room);
  const std::size_t size =
      libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), out.get(), room);
  if (size == 0) {
    throw std::runtime_error("compressing the data of the page failed");
  }
  return {out.get(), out.get() + size};
}

void appendBase64(std::string& text, std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::size_t begin = text.size();
  text.resize(begin + (bytes.size() + 2) / 3 * 4, '=');
  char* out = text.data() + begin;
  std::size_t i = 0;
  for (; i + 2 < bytes.size(); i += 3) {
    const unsigned three =
        (unsigned{bytes[i]} << 16U) | (unsigned{bytes[i + 1]} << 8U) | unsigned{bytes[i + 2]};
    *out++ = digits[three >> 18U];
    *out++ = digits[(three >> 12U) & 63U];
    *out++ = digits[(three >> 6U) & 63U];
    *out++ = digits[three & 63U];
  }
  if (i < bytes.size()) {
    const bool two = i + 1 < bytes.size();
    const unsigned rest = (unsigned{bytes[i]} << 16U) | (two ? unsigned{bytes[i + 1]} << 8U : 0U);
    *out++ = digits[rest >> 18U];
    *out++ = digits[(rest >> 12U) & 63U];
    if (two) {
      *out++ = digits[(rest >> 6U) & 63U];
    }
  }
}

std::vector<std::uint8_t> sha256(std::string_view text) {
  sha256_ctx context{};
  sha256_init(&context);
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes are bytes.
  sha256_update(&context, text.size(), reinterpret_cast<const std::uint8_t*>(text.data()));
  std::vector<std::uint8_t> digest(SHA256_DIGEST_SIZE);
  sha256_digest(&context, digest.size(), digest.data());
  return digest;
}

std::string hex(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += digits[byte >> 4U];
    text += digits[byte & 15U];
  }
  return text;
}

}  // namespace kcf
