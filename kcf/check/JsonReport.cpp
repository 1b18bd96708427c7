#include "check/JsonReport.h"

#include <nlohmann/json.hpp>
#include <ostream>

namespace kcf {
namespace {

using KESTparse::Origin;
using KESTparse::Severity;
using nlohmann::ordered_json;

void addLine(std::string& lines, const std::string& line) {
  lines += lines.empty() ? "\n    " : ",\n    ";
  lines += line;
}

ordered_json objectOf(const ShownPlace& place) {
  return {{"file", place.file},
          {"line", place.begin.line},
          {"column", place.begin.column},
          {"endLine", place.end.line},
          {"endColumn", place.end.column}};
}

ordered_json objectOf(const CheckedFile& file, const KESTparse::Fix& fix) {
  ordered_json edits = ordered_json::array();
  for (const KESTparse::Edit& edit : fix.edits) {
    ordered_json object = objectOf(file.placeOf(edit.at));
    object["begin"] = edit.at.begin;
    object["end"] = edit.at.end;
    object["text"] = edit.text;
    edits.push_back(std::move(object));
  }
  return {{"message", fix.message}, {"edits", std::move(edits)}};
}

ordered_json objectOf(const CheckedFile& file, const KESTparse::Diagnostic& told) {
  ordered_json object = objectOf(file.placeOf(told.at));
  object["severity"] = told.severity == Severity::error ? "error" : "warning";
  object["origin"] = told.origin == Origin::converter ? "converter" : "checker";
  object["code"] = told.code;
  object["message"] = told.message;
  object["help"] = told.help;
  object["related"] = ordered_json::array();
  for (const KESTparse::Related& related : told.related) {
    ordered_json place = objectOf(file.placeOf(related.at));
    place["message"] = related.message;
    object["related"].push_back(std::move(place));
  }
  object["fixes"] = ordered_json::array();
  for (const KESTparse::Fix& fix : told.fixes) {
    object["fixes"].push_back(objectOf(file, fix));
  }
  return object;
}

}  // namespace

std::string lineOf(const ordered_json& value) {
  return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

void JsonReport::render(const CheckedFile& file, Part& part) const {
  const std::optional<bool> converts = file.converts();
  part.file = lineOf({{"file", file.path()},
                      {"errors", file.errors()},
                      {"warnings", file.warnings()},
                      {"converts", converts ? ordered_json(*converts) : ordered_json(nullptr)}});
  for (const KESTparse::Diagnostic& told : file.diagnostics()) {
    addLine(part.diagnostics, lineOf(objectOf(file, told)));
  }
}

void JsonReport::add(Part part) {
  addLine(files_, part.file);
  if (!part.diagnostics.empty()) {
    diagnostics_ += (diagnostics_.empty() ? "" : ",") + part.diagnostics;
  }
}

void JsonReport::finish() {
  const auto end = [](const std::string& lines) { return lines.empty() ? "]" : "\n  ]"; };
  *out_ << "{\n  \"files\": [" << files_ << end(files_) << ",\n  \"diagnostics\": [" << diagnostics_
        << end(diagnostics_) << "\n}\n";
}

}  // namespace kcf
