#include "ResultFile.h"

#include <H5Cpp.h>

#include "h5io/SolutionTimes.h"

namespace h5io {
namespace {

H5::H5File openFile(const std::string& fileName) {
  try {
    return {fileName, H5F_ACC_RDONLY};
  } catch (const H5::Exception&) {
    throw OpenFileFailed(fileName);
  }
}

/// The names of the stored solutions.
std::vector<std::string> listSolutions(const H5::H5File& file) {
  try {
    const H5::Group group = file.openGroup(solutionsPath);
    std::vector<std::string> names(group.getNumObjs());
    for (std::size_t i = 0; i < names.size(); ++i) {
      names[i] = group.getObjnameByIdx(i);
    }
    return names;
  } catch (const H5::Exception&) {
    throw InvalidGroupPath(solutionsPath);
  }
}

double readTime(const H5::H5File& file, const std::string& solution) {
  try {
    const std::string path = std::string(solutionsPath) + "/" + solution;
    double time = 0.0;
    const auto read = [&time](const H5::H5Object& object) {
      const H5::Attribute attribute = object.openAttribute(timeAttribute);
      if (attribute.getSpace().getSimpleExtentNpoints() != 1) {
        throw AccessAttributeFailed(timeAttribute);
      }
      attribute.read(H5::PredType::NATIVE_DOUBLE, &time);
    };
    switch (file.childObjType(path)) {
      case H5O_TYPE_GROUP:
        read(file.openGroup(path));
        break;
      case H5O_TYPE_NAMED_DATATYPE:
        read(file.openDataType(path));
        break;
      default:
        read(file.openDataSet(path));
    }
    return time;
  } catch (const H5::Exception&) {
    throw AccessAttributeFailed(timeAttribute);
  }
}

}  // namespace
}  // namespace h5io

extern "C" void kestReadSolutionTimes(const std::string& fileName, std::vector<double>& times) {
  H5::Exception::dontPrint();
  const H5::H5File file = h5io::openFile(fileName);
  const std::vector<std::string> solutions = h5io::listSolutions(file);
  times.assign(solutions.size(), 0.0);
  for (std::size_t i = 0; i < solutions.size(); ++i) {
    times[i] = h5io::readTime(file, solutions[i]);
  }
}
