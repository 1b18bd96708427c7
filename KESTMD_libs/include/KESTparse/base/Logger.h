/// \file
/// The one way in which the system speaks to the console.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace KESTparse {

/// Severity of a log line. Every level above information is information too.
namespace level {
inline constexpr int error = 1;        ///< always shown; ends the process with status 1
inline constexpr int warning = 2;      ///< shown on standard error
inline constexpr int information = 3;  ///< shown on standard output
}  // namespace level

/// Writes reports to the console, wrapped to its width, and hands errors to the sinks of a host.
class Logger {
 public:
  /// Receives a status (-1 from within a parallel region and from the fatal report, else 0) and a
  /// text.
  using Sink = std::function<void(int status, const std::string& text)>;

  /// Registers a sink. Sinks are called only while `GlobalValues::reportToSinks` is on.
  void addSink(Sink sink);

  /// Removes all sinks.
  void clearSinks();

  /// Reports `text` at `level`. An error ends the process with status 1 unless errors are reported
  /// to sinks.
  void log(int level, const std::string& text);

  /// The report that precedes an abort. It returns; the caller aborts.
  void fatal(const std::string& text);

 private:
  std::vector<Sink> sinks_;
};

/// The logger of the process.
Logger& getLogger();

/// Breaks `text` at blanks and tabs into lines of 72 characters for the first and 75 for the
/// others, each of these behind three blanks. Widths count bytes.
std::string wrapText(std::string_view text);

}  // namespace KESTparse
