/// \file
/// What `kcf check` finds, for people.
#pragma once

#include <iosfwd>

#include "check/CheckedFile.h"

namespace kcf {

class TextReport : public Report {
 public:
  /// \param columns the width of the output, beyond which lines of files are cut.
  TextReport(std::ostream& out, bool hasColors, std::size_t columns)
      : out_(&out), hasColors_(hasColors), columns_(columns) {}
  void add(Part part) override;
  void finish() override;

 protected:
  void render(const CheckedFile& file, Part& part) const override;

 private:
  std::ostream* out_;
  bool hasColors_;
  std::size_t columns_;
  std::size_t files_ = 0;
  std::size_t errors_ = 0;
  std::size_t warnings_ = 0;
  std::string firstCode_;
};

}  // namespace kcf
