/// \file
/// The solutions that a result file of an earlier run holds.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace h5io {

/// The group that holds one object for each stored solution.
inline constexpr const char* solutionsPath = "/RESULTS/CellsAll/Depth";
/// The attribute of a solution that holds its time [s].
inline constexpr const char* timeAttribute = "t";

/// A failure to read a result file.
class Exception {
 public:
  explicit Exception(std::string message) : message_(std::move(message)) {}
  [[nodiscard]] const std::string& getMessage() const { return message_; }

 private:
  std::string message_;
};

class OpenFileFailed : public Exception {
 public:
  explicit OpenFileFailed(const std::string& fileName)
      : Exception("Opening the HDF5 file at '" + fileName + "' failed.") {}
};

class InvalidGroupPath : public Exception {
 public:
  explicit InvalidGroupPath(const std::string& path)
      : Exception("Accessing the HDF5 group '" + path + "' failed.") {}
};

class AccessAttributeFailed : public Exception {
 public:
  explicit AccessAttributeFailed(const std::string& name)
      : Exception("Accessing the HDF5 attribute '" + name + "' failed.") {}
};

/// The times [s] of all solutions in the result file, in the order in which its group lists them. A
/// file that could be read is read once for the process. A failure is logged as a warning each time
/// and gives an empty vector.
std::vector<double> getSolutionTimes(const std::string& fileName);

}  // namespace h5io
