/// \file
/// How a host goes on behind a stop.
#pragma once

#include <exception>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "KESTparse/base/Console.h"
#include "KESTparse/framework/InputParseError.h"

namespace KESTparse {

/// Runs `step`, and returns what it was stopped by: an error or an assertion under a console that
/// throws them, a refused value, a text or an exception that the converter lets end the process.
/// Memory that is short is no stop: it goes on to the caller.
template <class Step>
std::optional<Stopped> stopOf(Step&& step) {
  try {
    std::forward<Step>(step)();
  } catch (const Stopped& stop) {
    return stop;
  } catch (const InputParseError& error) {
    return Stopped{Stopped::Kind::error, error.message};
  } catch (const std::string& text) {
    return Stopped{Stopped::Kind::thrown, text};
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& exception) {
    return Stopped{Stopped::Kind::thrown, exception.what()};
  }
  return std::nullopt;
}

}  // namespace KESTparse
