#include "KESTparse/base/Console.h"

#include <cstdlib>
#include <iostream>
#include <mutex>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/GlobalValues.h"

#ifndef KESTRIX_VERSION
#define KESTRIX_VERSION "unversioned"
#endif

namespace KESTparse {
namespace {

constexpr std::size_t firstWidth = 72;
constexpr std::size_t furtherWidth = 75;

// Reports of several threads must not mix.
std::mutex oneAtATime;

}  // namespace

std::string wrapText(std::string_view text) {
  std::string wrapped;
  wrapped.reserve(text.size() + text.size() / 16);
  std::size_t start = 0;
  std::size_t lastBreak = 0;
  std::size_t width = firstWidth;
  const auto emit = [&](std::size_t length) {
    if (width != firstWidth) {
      wrapped += "   ";
    }
    wrapped += text.substr(start, length);
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    std::size_t next = 0;
    if (c == ' ' || c == '\t') {
      lastBreak = i;
    } else if (c == '\n') {
      next = i + 1;
      emit(next - start);
    } else if (i - start > width && lastBreak > start) {
      next = lastBreak + 1;
      emit(next - start);
      wrapped += '\n';
    }
    if (next != 0) {
      // The loop steps behind the new start: the first character of a line is never examined.
      start = lastBreak = i = next;
      width = furtherWidth;
    }
  }
  emit(std::string_view::npos);
  return wrapped;
}

Console& console() {
  static Console converter;
  Console* const chosen = GlobalValues::instance().console;
  return chosen == nullptr ? converter : *chosen;
}

void Console::show(int level, const std::string& text) {
  if (level > GlobalValues::instance().verbosity) {
    return;
  }
  const std::lock_guard<std::mutex> lock(oneAtATime);
  if (level < level::information) {
    std::cerr << "\nWARNING -> " << wrapText(text) << std::endl;
  } else {
    std::cout << "-> " << wrapText(text) << std::endl;
  }
}

void Console::endWithError(const std::string& text) {
  onError(text);
  std::abort();
}

void Console::endWithAssertion(const std::string& text, const std::string& where) {
  onAssertion(text, where);
  std::abort();
}

void Console::onError(const std::string& text) {
  const std::lock_guard<std::mutex> lock(oneAtATime);
  std::cerr << "\nERROR -> " << wrapText(text) << std::endl;
  std::cout << "Simulation stopped due to error(s)." << std::endl;
  std::exit(EXIT_FAILURE);
}

void Console::onAssertion(const std::string& text, const std::string& where) {
  const std::lock_guard<std::mutex> lock(oneAtATime);
  std::cout << "A fatal error occured!" << std::endl;
  std::cerr << "\nEXCEPTION -> " << wrapText(text + where) << std::endl;
  std::abort();
}

void QuietConsole::show(int /*level*/, const std::string& /*text*/) {}

void QuietConsole::onError(const std::string& text) {
  throw Stopped{Stopped::Kind::error, text};
}

void QuietConsole::onAssertion(const std::string& text, const std::string& /*where*/) {
  throw Stopped{Stopped::Kind::assertion, text};
}

void assertionFailed(const std::string& message, std::string_view expression, const char* file,
                     int line) {
  std::ostringstream where;
  where << ", in file: " << file << " on line " << line << ", Version: " << KESTRIX_VERSION
        << ", compiled at: " << __DATE__ << ", " << __TIME__;
  console().endWithAssertion(message.empty() ? std::string(expression) : message, where.str());
}

}  // namespace KESTparse
