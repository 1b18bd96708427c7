/// \file
/// What `kcf check` finds, as workflow commands that a code host shows beside the lines.
#pragma once

#include <iosfwd>

#include "check/CheckedFile.h"

namespace kcf {

class GithubReport : public Report {
 public:
  explicit GithubReport(std::ostream& out) : out_(&out) {}
  void add(Part part) override;
  void finish() override {}

 protected:
  void render(const CheckedFile& file, Part& part) const override;

 private:
  std::ostream* out_;
};

}  // namespace kcf
