#include "check/Mending.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <span>
#include <tuple>
#include <utility>

#include "KESTparse/document/Edits.h"

namespace kcf {
namespace {

using KESTparse::Diagnostic;
using KESTparse::Document;
using KESTparse::Edit;
using KESTparse::Fix;
using KESTparse::Severity;

/// How much there is to be told: errors, and all.
std::pair<std::size_t, std::size_t> burden(Document& document) {
  const std::vector<Diagnostic>& all = document.check();
  const auto errors = std::count_if(all.begin(), all.end(), [](const Diagnostic& told) {
    return told.severity == Severity::error;
  });
  return {static_cast<std::size_t>(errors), all.size()};
}

/// A fix of a diagnostic.
struct Candidate {
  const Diagnostic* told;
  const Fix* fix;
};

/// The fixes that do not touch each other, the first of each diagnostic.
std::vector<Candidate> candidatesOf(const std::vector<Diagnostic>& diagnostics) {
  std::vector<Candidate> candidates;
  std::map<std::size_t, std::size_t> taken;  // ends by begins
  const auto isFree = [&taken](const Edit& edit) {
    const auto next = taken.lower_bound(edit.at.begin);
    const bool touchesNext = next != taken.end() && next->first <= edit.at.end;
    return !touchesNext && (next == taken.begin() || std::prev(next)->second < edit.at.begin);
  };
  for (const Diagnostic& told : diagnostics) {
    if (told.fixes.empty()) {
      continue;
    }
    const std::vector<Edit>& edits = told.fixes.front().edits;
    if (std::all_of(edits.begin(), edits.end(), isFree)) {
      for (const Edit& edit : edits) {
        taken.emplace(edit.at.begin, edit.at.end);
      }
      candidates.push_back({&told, &told.fixes.front()});
    }
  }
  return candidates;
}

std::string applied(const std::string& text, const std::vector<Candidate>& candidates) {
  std::vector<Edit> edits;
  for (const Candidate& candidate : candidates) {
    edits.insert(edits.end(), candidate.fix->edits.begin(), candidate.fix->edits.end());
  }
  return KESTparse::edited(text, std::move(edits));
}

/// One pass over the fixes of a document.
class Round {
 public:
  Round(Document& before, const ReadText& read)
      : before_(before), read_(read), burden_(burden(before)) {}

  /// Applies what leaves less to be told; a bad one among many is found by halving.
  void apply(std::span<const Candidate> candidates) {
    if (candidates.empty()) {
      return;
    }
    std::vector<Candidate> tried = accepted;
    tried.insert(tried.end(), candidates.begin(), candidates.end());
    std::unique_ptr<Document> document = read_(applied(before_.syntax().text(), tried));
    const auto rest = burden(*document);
    if (rest < burden_) {
      burden_ = rest;
      after = std::move(document);
      accepted = std::move(tried);
    } else if (candidates.size() > 1) {
      apply(candidates.first(candidates.size() / 2));
      apply(candidates.subspan(candidates.size() / 2));
    }
  }

  std::unique_ptr<Document> after;
  std::vector<Candidate> accepted;

 private:
  Document& before_;
  const ReadText& read_;
  std::pair<std::size_t, std::size_t> burden_;
};

}  // namespace

Mended mend(std::string text, const ReadText& read) {
  Mended mended{read(std::move(text)), {}};
  while (true) {
    Round round(*mended.document, read);
    round.apply(candidatesOf(mended.document->check()));
    if (round.after == nullptr) {
      return mended;
    }
    for (const auto& [told, fix] : round.accepted) {
      const KESTparse::LineColumn at = mended.document->lines().at(told->at.at.begin);
      mended.done.push_back(
          fmt::format("{}:{}: {} [{}]", at.line, at.column, fix->message, told->code));
    }
    mended.document = std::move(round.after);
  }
}

}  // namespace kcf
