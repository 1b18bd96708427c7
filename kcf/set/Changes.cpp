#include "set/Changes.h"

#include <fmt/format.h>

#include <algorithm>

#include "KESTparse/base/Conversions.h"
#include "Verb.h"

namespace kcf {

using KESTparse::Diagnostic;
using KESTparse::Severity;

Change changeOf(std::string_view argument) {
  // A name in brackets may hold an equals sign.
  std::size_t mark = 0;
  for (bool isKey = false; mark < argument.size() && (isKey || argument[mark] != '='); ++mark) {
    isKey = argument[mark] == '[' || (isKey && argument[mark] != ']');
  }
  if (mark == argument.size() || mark == 0) {
    throw UsageError{fmt::format(
        "'{}' is no change: it must be PATH=VALUE, such as FRICTION/default_friction=32",
        argument)};
  }
  return {std::string(argument.substr(0, mark)),
          std::string(KESTparse::trim(argument.substr(mark + 1)))};
}

std::vector<Diagnostic> Judge::broken(KESTparse::Document& changed) {
  std::vector<Diagnostic> found = changed.check();
  if (found.empty()) {
    return found;
  }
  Told known;
  {
    const std::lock_guard lock(mutex_);
    if (!told_) {
      told_.emplace();
      KESTparse::Document before = read(original_);
      for (const Diagnostic& told : before.check()) {
        told_->emplace(told.code, told.message);
      }
    }
    known = *told_;
  }
  std::erase_if(found, [&known](const Diagnostic& told) {
    const auto same = known.find({told.code, told.message});
    const bool isKnown = same != known.end();
    if (isKnown) {
      known.erase(same);
    }
    return isKnown;
  });
  return found;
}

bool haveError(const std::vector<Diagnostic>& diagnostics) {
  return std::any_of(diagnostics.begin(), diagnostics.end(),
                     [](const Diagnostic& told) { return told.severity == Severity::error; });
}

std::string linesOf(const std::vector<Diagnostic>& diagnostics, std::string_view indent) {
  std::string lines;
  for (const Diagnostic& told : diagnostics) {
    lines += fmt::format("{}{}[{}]: {}\n", indent,
                         told.severity == Severity::error ? "error" : "warning", told.code,
                         told.message);
    if (!told.help.empty()) {
      lines += fmt::format("{}  help: {}\n", indent, told.help);
    }
  }
  return lines;
}

}  // namespace kcf
