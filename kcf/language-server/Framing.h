/// \file
/// How messages stand in a stream of bytes: each behind a header that tells its length.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kcf::server {

/// Takes messages out of a stream that comes in pieces. Where a header cannot be understood, nobody
/// knows where the next message begins: the stream is then broken for good.
class FrameReader {
 public:
  /// The longest header and the longest message that are taken, in bytes.
  static constexpr std::size_t longestHeader = 4096;
  static constexpr std::size_t longestMessage = std::size_t{1} << 30;

  void append(std::string_view bytes);
  /// The next whole message; nothing as long as there is none.
  std::optional<std::string> next();
  /// What is wrong with the stream, in words; empty as long as nothing is.
  [[nodiscard]] const std::string& fault() const { return fault_; }

 private:
  bool readHeader();
  void readField(std::string_view field);

  std::string bytes_;
  std::size_t at_ = 0;                 // what stands before it is done with
  std::size_t searched_ = 0;           // up to where no end of a header was found
  std::optional<std::size_t> length_;  // of the message, once its header was read
  bool isInBody_ = false;
  std::string fault_;
};

/// A message as it is sent.
std::string framed(std::string_view message);

}  // namespace kcf::server
