#include "check/GithubReport.h"

#include <fmt/format.h>

#include <ostream>
#include <string_view>

#include "check/Excerpt.h"

namespace kcf {
namespace {

/// `text` without what ends a value of a command.
std::string escaped(std::string_view text, std::string_view special) {
  std::string result;
  for (const char c : harmless(text)) {
    if (special.find(c) == std::string_view::npos) {
      result += c;
    } else {
      result += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
  }
  return result;
}

}  // namespace

void GithubReport::render(const CheckedFile& file, Part& part) const {
  constexpr std::string_view inProperty = "%:,";
  constexpr std::string_view inText = "%";
  for (const KESTparse::Diagnostic& told : file.diagnostics()) {
    const ShownPlace place = file.placeOf(told.at);
    part.diagnostics +=
        fmt::format("::{} file={},line={},endLine={},col={},endColumn={},title={}::{}%0A{}\n",
                    told.severity == KESTparse::Severity::error ? "error" : "warning",
                    escaped(place.file, inProperty), place.begin.line, place.end.line,
                    place.begin.column, place.end.column, escaped(told.code, inProperty),
                    escaped(told.message, inText), escaped(told.help, inText));
  }
}

void GithubReport::add(Part part) {
  *out_ << part.diagnostics;
}

}  // namespace kcf
