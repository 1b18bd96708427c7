/// \file
/// The reader of result files.
#pragma once

#include <string>
#include <vector>

namespace h5io {

/// The times [s] of all solutions in the result file, in the order in which its group lists them;
/// throws an `Exception`. A damaged file can crash it or keep it busy for ever, so it is called in
/// a process of its own.
std::vector<double> readTimes(const std::string& fileName);

}  // namespace h5io
