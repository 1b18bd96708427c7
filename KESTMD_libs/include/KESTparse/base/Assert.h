/// \file
/// The assertion that guards against programming errors: it reports and aborts.
#pragma once

#include <sstream>
#include <string>
#include <string_view>

namespace KESTparse {

/// Reports a failed assertion through the fatal report and aborts.
/// \param message the text to show; where it is empty, the expression stands for it.
/// \param expression the text of the failed expression.
/// \param file,line where it failed.
[[noreturn]] void assertionFailed(const std::string& message, std::string_view expression,
                                  const char* file, int line);

}  // namespace KESTparse

// A stream expression cannot stand in parentheses.
// NOLINTBEGIN(bugprone-macro-parentheses)
/// Aborts with a report when `expression` is false. `message` is a stream expression; "" shows the
/// expression itself.
#define ASSERT(expression, message)                                                        \
  do {                                                                                     \
    if (!(expression)) [[unlikely]] {                                                      \
      std::ostringstream assertMessage_;                                                   \
      assertMessage_ << message;                                                           \
      ::KESTparse::assertionFailed(assertMessage_.str(), #expression, __FILE__, __LINE__); \
    }                                                                                      \
  } while (false)
// NOLINTEND(bugprone-macro-parentheses)
