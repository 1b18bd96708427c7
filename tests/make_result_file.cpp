/// \file
/// Makes small result files for the tests: `make-result-file DESCRIPTION OUTPUT`.
/// Each line of the description is the time of one solution; the word "no-attribute" stands for a
/// solution without a time, and a first line "no-group" for a file without solutions at all.

#include <H5Cpp.h>

#include <fstream>
#include <iostream>
#include <string>

namespace {

void addSolution(const H5::Group& group, const std::string& name, const std::string& time) {
  const hsize_t size = 1;
  const H5::DataSet solution =
      group.createDataSet(name, H5::PredType::NATIVE_DOUBLE, H5::DataSpace(1, &size));
  if (time == "no-attribute") {
    return;
  }
  const double value = std::stod(time);
  solution.createAttribute("t", H5::PredType::NATIVE_DOUBLE, H5::DataSpace(H5S_SCALAR))
      .write(H5::PredType::NATIVE_DOUBLE, &value);
}

void makeResultFile(std::istream& description, const std::string& output) {
  const H5::H5File file(output, H5F_ACC_TRUNC);
  const H5::Group results = file.createGroup("/RESULTS");
  std::string line;
  bool hasLine = static_cast<bool>(std::getline(description, line));
  if (hasLine && line == "no-group") {
    return;
  }
  const H5::Group cells = results.createGroup("CellsAll");
  const H5::Group solutions = cells.createGroup("Depth");
  for (int number = 0; hasLine; ++number) {
    addSolution(solutions, "Depth_" + std::to_string(1000 + number), line);
    hasLine = static_cast<bool>(std::getline(description, line));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: make-result-file DESCRIPTION OUTPUT\n";
    return 2;
  }
  std::ifstream description(argv[1]);
  if (!description) {
    std::cerr << "make-result-file: '" << argv[1] << "' cannot be opened\n";
    return 1;
  }
  makeResultFile(description, argv[2]);
  return 0;
}
