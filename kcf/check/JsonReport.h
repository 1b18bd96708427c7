/// \file
/// What `kcf check` finds, as one JSON object; `docs/check.schema.json` is its schema.
#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "check/CheckedFile.h"

namespace kcf {

/// `value` on one line; bytes that are not UTF-8 are replaced.
std::string lineOf(const nlohmann::ordered_json& value);

class JsonReport : public Report {
 public:
  explicit JsonReport(std::ostream& out) : out_(&out) {}
  void add(Part part) override;
  void finish() override;

 protected:
  void render(const CheckedFile& file, Part& part) const override;

 private:
  std::ostream* out_;
  std::string files_;
  std::string diagnostics_;
};

}  // namespace kcf
