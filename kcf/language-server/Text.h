/// \file
/// The text of an open file, and places in it as the client counts them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/framework/Scanner.h"

namespace kcf::server {

/// A text beyond this size, in bytes, is never read while someone waits for a key stroke.
inline constexpr std::size_t largeText = std::size_t{1} << 19;

/// In what a client counts along a line.
enum class Encoding : std::uint8_t { utf8, utf16 };

/// A place; both count from 0.
struct Position {
  std::size_t line = 0;
  std::size_t character = 0;
  friend bool operator==(const Position&, const Position&) = default;
};

/// Where the lines of a text begin. They end with a line feed, a carriage return, or both.
class Lines {
 public:
  explicit Lines(std::string_view text);

  /// The text changed: `length` bytes stand in place of `replaced`. Takes a time linear in the new
  /// lines and, with a small factor, in the lines behind them.
  void update(std::string_view changed, KESTparse::Span replaced, std::size_t length);

  [[nodiscard]] std::size_t count() const { return starts_.size(); }
  /// The line that the byte at `offset` stands in.
  [[nodiscard]] std::size_t lineOf(std::size_t offset) const;
  /// A line without what ends it.
  [[nodiscard]] KESTparse::Span line(std::string_view text, std::size_t number) const;
  /// A place beyond the end of its line is that end, one beyond the text the end of the text.
  [[nodiscard]] std::size_t offsetAt(std::string_view text, Position at, Encoding encoding) const;
  [[nodiscard]] Position positionAt(std::string_view text, std::size_t offset,
                                    Encoding encoding) const;

 private:
  std::vector<std::uint32_t> starts_;
};

/// A text that is edited, with its lines.
class Text {
 public:
  /// Throws a `std::length_error` for a text of 4 GB or more.
  explicit Text(std::string content);

  [[nodiscard]] const std::string& content() const { return content_; }
  [[nodiscard]] const Lines& lines() const { return lines_; }
  void replace(KESTparse::Span at, std::string_view text);

 private:
  std::string content_;
  Lines lines_;
};

}  // namespace kcf::server
