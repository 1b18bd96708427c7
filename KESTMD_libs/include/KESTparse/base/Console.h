/// \file
/// The one way in which the library speaks to its host, and in which it stops.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace KESTparse {

/// Severity of a line. Every level above information is information too.
namespace level {
inline constexpr int warning = 2;      ///< shown on standard error
inline constexpr int information = 3;  ///< shown on standard output
}  // namespace level

/// What becomes of a line, an error and a failed assertion. This one is the converter's: they are
/// printed, wrapped to the width of the console, and the last two end the process. A host that
/// lives on overrides them; see `QuietConsole`.
class Console {
 public:
  Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  virtual ~Console() = default;

  /// Shows a warning or a line of information. Lines above `GlobalValues::verbosity` are dropped.
  virtual void show(int level, const std::string& text);
  /// An error of the user: status 1.
  [[noreturn]] void endWithError(const std::string& text);
  /// A failed assertion: abort.
  /// \param where source, line and build, to be shown behind the text.
  [[noreturn]] void endWithAssertion(const std::string& text, const std::string& where);

 protected:
  // Neither of them returns: they end the process or throw.
  virtual void onError(const std::string& text);
  virtual void onAssertion(const std::string& text, const std::string& where);
};

/// Thrown where the converter would have ended.
struct Stopped {
  enum class Kind : std::uint8_t {
    error,
    assertion,
    thrown,   ///< a text or an exception that nobody catches
    skipped,  ///< a file is needed, and files are not read
  };
  Kind kind;
  std::string text;
};

/// Prints nothing, and throws a `Stopped` where the converter ends.
class QuietConsole : public Console {
 public:
  void show(int level, const std::string& text) override;

 protected:
  void onError(const std::string& text) override;
  void onAssertion(const std::string& text, const std::string& where) override;
};

/// The console of the file that this thread reads.
Console& console();

/// Breaks `text` at blanks and tabs into lines of 72 characters for the first and 75 for the
/// others, each of these behind three blanks. Widths count bytes.
std::string wrapText(std::string_view text);

}  // namespace KESTparse
