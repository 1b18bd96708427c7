/// \file
/// Fuzz target: a file with a time series.

#include "FuzzRun.h"
#include "KESTcore/StandardSerie.h"
#include "KESTparse/base/Console.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::beginRun();
  const fuzz::ScratchFile file(fuzz::asText(data, size));
  try {
    const Kestrix::StandardSerie serie(file.path());
    Kestrix::Table table;
    serie.copyTo(table);
    if (!table.empty() && !table[0].empty()) {
      static_cast<void>(serie.value(table[0][0] + 1, 0));
    }
  } catch (const KESTparse::Stopped&) {
  }
  return 0;
}
