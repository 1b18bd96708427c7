#include "ResultFile.h"

#include <hdf5.h>

#include <exception>

#include "h5io/SolutionTimes.h"

namespace h5io {
namespace {

/// An open object of HDF5 of any kind, closed when it goes.
class Handle {
 public:
  /// Throws `fault` if nothing was opened.
  template <class Fault>
  Handle(hid_t id, const Fault& fault) : id_(id) {
    if (id < 0) {
      throw fault;
    }
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { H5Idec_ref(id_); }

  [[nodiscard]] hid_t id() const { return id_; }

 private:
  hid_t id_;
};

/// Called for each link of a group with the names found so far. No exception may pass through HDF5.
herr_t appendName(hid_t /*group*/, const char* name, const H5L_info_t* /*info*/, void* names) {
  try {
    static_cast<std::vector<std::string>*>(names)->emplace_back(name);
    return 0;
  } catch (const std::exception&) {
    return -1;
  }
}

std::vector<std::string> listNames(const Handle& group) {
  std::vector<std::string> names;
  if (H5Literate(group.id(), H5_INDEX_NAME, H5_ITER_INC, nullptr, appendName, &names) < 0) {
    throw InvalidGroupPath(solutionsPath);
  }
  return names;
}

double readTime(const Handle& solutions, const std::string& name) {
  const AccessAttributeFailed fault(timeAttribute);
  const Handle solution(H5Oopen(solutions.id(), name.c_str(), H5P_DEFAULT), fault);
  const Handle attribute(H5Aopen(solution.id(), timeAttribute, H5P_DEFAULT), fault);
  const Handle space(H5Aget_space(attribute.id()), fault);
  double time = 0.0;
  if (H5Sget_simple_extent_npoints(space.id()) != 1 ||
      H5Aread(attribute.id(), H5T_NATIVE_DOUBLE, &time) < 0) {
    throw AccessAttributeFailed(timeAttribute);
  }
  return time;
}

}  // namespace

std::vector<double> readTimes(const std::string& fileName) {
  H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
  // A program stands alone: filters that the file asks for are not looked for on the machine.
  H5PLset_loading_state(0);
  const Handle file(H5Fopen(fileName.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT),
                    OpenFileFailed(fileName));
  const Handle solutions(H5Gopen2(file.id(), solutionsPath, H5P_DEFAULT),
                         InvalidGroupPath(solutionsPath));
  std::vector<double> times;
  for (const std::string& name : listNames(solutions)) {
    times.push_back(readTime(solutions, name));
  }
  return times;
}

}  // namespace h5io
