#include "KESTparse/base/Logger.h"

#include <omp.h>

#include <cstdlib>
#include <iostream>
#include <utility>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/GlobalValues.h"

#ifndef KESTRIX_VERSION
#define KESTRIX_VERSION "unversioned"
#endif

namespace KESTparse {
namespace {

constexpr std::size_t firstWidth = 72;
constexpr std::size_t furtherWidth = 75;

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

Logger& getLogger() {
  static Logger logger;
  return logger;
}

void Logger::addSink(Sink sink) {
  sinks_.push_back(std::move(sink));
}

void Logger::clearSinks() {
  sinks_.clear();
}

void Logger::log(int level, const std::string& text) {
  const GlobalValues& globalvalues = GlobalValues::instance();
  if (level == level::error) {
#pragma omp critical(kestrixConsole)
    {
      std::cerr << "\nERROR -> " << wrapText(text) << std::endl;
      std::cout << "Simulation stopped due to error(s)." << std::endl;
      if (!globalvalues.reportToSinks) {
        std::exit(EXIT_FAILURE);
      }
    }
    for (const Sink& sink : sinks_) {
      sink(omp_in_parallel() != 0 ? -1 : 0, text);
    }
    return;
  }
  if (level > globalvalues.verbosity) {
    return;
  }
  if (level < level::information) {
#pragma omp critical(kestrixConsole)
    std::cerr << "\nWARNING -> " << wrapText(text) << std::endl;
    return;
  }
  std::string prefix;
  if (omp_get_num_threads() > 1 && omp_get_thread_num() != 0) {
    prefix = "[T" + std::to_string(omp_get_thread_num()) + "]: ";
  }
#pragma omp critical(kestrixConsole)
  std::cout << prefix << "-> " << wrapText(text) << std::endl;
}

void Logger::fatal(const std::string& text) {
#pragma omp critical(kestrixConsole)
  {
    std::cout << "A fatal error occured!" << std::endl;
    std::cerr << "\nEXCEPTION -> " << wrapText(text) << std::endl;
  }
  const GlobalValues& globalvalues = GlobalValues::instance();
  if (globalvalues.reportToSinks) {
    for (const Sink& sink : sinks_) {
      sink(-1, "For detailed information see '" + globalvalues.errorFileStem + ".err' file.");
    }
  }
}

void assertionFailed(const std::string& message, std::string_view expression, const char* file,
                     int line) {
  std::ostringstream text;
  text << (message.empty() ? expression : std::string_view(message)) << ", in file: " << file
       << " on line " << line << ", Version: " << KESTRIX_VERSION << ", compiled at: " << __DATE__
       << ", " << __TIME__;
  getLogger().fatal(text.str());
  std::abort();
}

}  // namespace KESTparse
