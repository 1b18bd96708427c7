/// \file
/// What `kcf check` finds, as a SARIF 2.1.0 log for code hosts.
#pragma once

#include <iosfwd>
#include <set>

#include "check/CheckedFile.h"

namespace kcf {

class SarifReport : public Report {
 public:
  explicit SarifReport(std::ostream& out) : out_(&out) {}
  void add(Part part) override;
  void finish() override;

 protected:
  void render(const CheckedFile& file, Part& part) const override;

 private:
  std::ostream* out_;
  std::set<std::string> codes_;
  std::string results_;
};

}  // namespace kcf
