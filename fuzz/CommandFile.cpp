/// \file
/// Fuzz target: a command file, from its text to its document.

#include <stdexcept>
#include <string>

#include "FuzzRun.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/framework/InputParseError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::beginRun();
  try {
    fuzz::convert(fuzz::asText(data, size));
  } catch (const KESTparse::Stopped&) {
  } catch (const KESTparse::InputParseError&) {
  } catch (const std::string&) {
    // A boundary, inner boundary or source that a controller finds twice.
  } catch (const std::invalid_argument&) {
    // A node of a mesh that is no number, and one that is too large.
  } catch (const std::out_of_range&) {
  }
  return 0;
}
