/// \file
/// The reader of result files, which stands in a library of its own: HDF5 brings in dozens of
/// shared libraries, and a conversion without restart must not wait for them.
#pragma once

#include <string>
#include <vector>

namespace h5io {

/// Name of the entry point of the reader's library.
inline constexpr const char* readerSymbol = "kestReadSolutionTimes";
/// Its type: appends the times to `times`; throws an `Exception`.
using Reader = void (*)(const std::string& fileName, std::vector<double>& times);

}  // namespace h5io
