/// \file
/// Fuzz target: a mesh file, read for its node strings.

#include <stdexcept>

#include "FuzzRun.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/base/Files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::beginRun();
  const fuzz::ScratchFile file(fuzz::asText(data, size));
  try {
    KESTparse::meshNodeStrings(file.path());
  } catch (const KESTparse::Stopped&) {
  } catch (const std::invalid_argument&) {
  } catch (const std::out_of_range&) {
  }
  return 0;
}
