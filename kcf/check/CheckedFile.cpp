#include "check/CheckedFile.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace kcf {

using KESTparse::Diagnostic;
using KESTparse::Severity;

CheckedFile::CheckedFile(std::string path, std::string directory, KESTparse::Document& document)
    : path_(std::move(path)),
      directory_(std::move(directory)),
      document_(&document),
      diagnostics_(&document.check()),
      errors_(static_cast<std::size_t>(
          std::count_if(diagnostics_->begin(), diagnostics_->end(),
                        [](const Diagnostic& told) { return told.severity == Severity::error; }))),
      converts_(document.converts()) {}

ShownPlace CheckedFile::placeOf(KESTparse::Span at) const {
  return {path_, lines().at(at.begin), lines().at(at.end)};
}

ShownPlace CheckedFile::placeOf(const KESTparse::TextPlace& place) const {
  if (place.file.empty()) {
    return placeOf(place.at);
  }
  const std::filesystem::path path = std::filesystem::path(directory_) / place.file;
  return {.file = path.lexically_normal().generic_string(),
          .begin = {place.line, place.column},
          .end = {place.line, std::max(place.endColumn, place.column)},
          .isInCommandFile = false};
}

Report::Part Report::partOf(const CheckedFile& file) const {
  Part part;
  part.errors = file.errors();
  part.warnings = file.warnings();
  if (!file.diagnostics().empty()) {
    part.firstCode = file.diagnostics().front().code;
  }
  render(file, part);
  return part;
}

}  // namespace kcf
