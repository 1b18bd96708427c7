/// \file
/// Fuzz target: fixes, on any text. None makes an error, and a second run has nothing to do.

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "FuzzRun.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "check/Mending.h"

namespace {

auto errorsOf(KESTparse::Document& document) {
  const auto& all = document.check();
  return std::count_if(all.begin(), all.end(), [](const KESTparse::Diagnostic& told) {
    return told.severity == KESTparse::Severity::error;
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const KESTparse::KestrixInputRoot schema;
  fuzz::beginRun();
  const auto read = [](std::string text) {
    return std::make_unique<KESTparse::Document>(std::move(text), schema,
                                                 KESTparse::DocumentOptions{.directory = "."});
  };
  const std::string text(fuzz::asText(data, size));
  const auto before = errorsOf(*read(text));
  const kcf::Mended mended = kcf::mend(text, read);
  const auto after = errorsOf(*mended.document);
  const bool isChanged = mended.document->syntax().text() != text;
  fuzz::require(after <= before, "fixes make an error");
  fuzz::require(isChanged != mended.done.empty(), "what is told of fixes is not what is done");
  fuzz::require(kcf::mend(mended.document->syntax().text(), read).done.empty(),
                "a second run has something to do");
  return 0;
}
