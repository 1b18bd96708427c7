/// \file
/// Fuzz target: the checker against the converter, on any text.

#include <algorithm>
#include <string>

#include "FuzzRun.h"
#include "KESTparse/document/Document.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace {

using fuzz::require;
using KESTparse::Diagnostic;
using KESTparse::Severity;

void checkDiagnostic(const Diagnostic& told, std::size_t size) {
  require(told.at.at.begin <= told.at.at.end && told.at.at.end <= size, "a place beside the text");
  require(!told.code.empty() && !told.message.empty(), "a diagnostic without words");
  require(told.severity != Severity::error || !told.help.empty(), "an error without help");
  for (const KESTparse::Fix& fix : told.fixes) {
    for (const KESTparse::Edit& edit : fix.edits) {
      require(edit.at.begin <= edit.at.end && edit.at.end <= size, "an edit beside the text");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const KESTparse::KestrixInputRoot schema;
  const std::string text(fuzz::asText(data, size));
  const bool converts = fuzz::outcomeOf(text).converts;
  KESTparse::Document document(text, schema, {.directory = "."});
  const auto& all = document.check();
  require(document.converts() == converts, "the checker expects another end of the converter");
  for (const Diagnostic& told : all) {
    checkDiagnostic(told, size);
    require(
        !converts || told.severity != Severity::error || told.origin == KESTparse::Origin::checker,
        "an error of the converter that it does not tell");
  }
  const bool hasError = std::any_of(all.begin(), all.end(), [](const Diagnostic& told) {
    return told.severity == Severity::error;
  });
  require(converts || hasError, "the converter refuses what has no error");
  return 0;
}
