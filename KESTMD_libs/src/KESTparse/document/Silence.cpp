#include "KESTparse/document/Silence.h"

#include <fmt/format.h>

#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "KESTparse/document/Codes.h"

namespace KESTparse {
namespace {

constexpr std::string_view blanks = " \t\r";

/// A code that a comment names.
struct Allowed {
  Span at;
  bool silences = false;
};

/// By the line that is meant and the code.
using AllowedCodes = std::multimap<std::pair<std::uint32_t, std::string>, Allowed>;

/// Takes `word` and the blanks in front of it off `text`.
bool take(std::string_view& text, std::string_view word) {
  const std::size_t begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos || !text.substr(begin).starts_with(word)) {
    return false;
  }
  text.remove_prefix(begin + word.size());
  return true;
}

/// The places of the codes that a comment allows.
std::vector<Span> codesIn(std::string_view text, Span comment) {
  std::vector<Span> codes;
  std::string_view rest = comment.in(text);
  if (!take(rest, "//") || !take(rest, "kcf:") || !take(rest, "allow")) {
    return codes;
  }
  constexpr std::string_view separators = " \t\r,";
  std::size_t at = comment.end - rest.size();
  while ((at = text.find_first_not_of(separators, at)) < comment.end) {
    const std::size_t end = std::min(text.find_first_of(separators, at), comment.end);
    codes.push_back({at, end});
    at = end;
  }
  return codes;
}

/// Whether nothing but white space and comments stands on a line.
bool isBare(const SyntaxTree& tree, Span line) {
  return line.in(tree.blanked()).find_first_not_of(blanks) == std::string_view::npos;
}

AllowedCodes allowedIn(const SyntaxTree& tree, const LineTable& lines) {
  AllowedCodes allowed;
  std::vector<std::pair<std::string, Allowed>> waiting;  // those on lines of their own
  std::uint32_t waitingLine = 0;
  std::uint32_t knownLine = 0;  // a line with very many comments is looked at once
  bool isLineBare = false;
  const auto settle = [&](std::uint32_t line) {
    for (auto& [code, each] : waiting) {
      allowed.emplace(std::pair(line, std::move(code)), each);
    }
    waiting.clear();
  };
  for (const Span& comment : tree.comments()) {
    const std::uint32_t line = lines.at(comment.begin).line;
    if (!waiting.empty() && line > waitingLine + 1) {
      settle(waitingLine + 1);
    }
    if (line != knownLine) {
      knownLine = line;
      isLineBare = isBare(tree, lines.line(line));
    }
    if (!isLineBare) {
      settle(line);
    }
    for (const Span& at : codesIn(tree.text(), comment)) {
      waiting.emplace_back(at.in(tree.text()), Allowed{at});
    }
    if (isLineBare) {
      waitingLine = line;
    } else {
      settle(line);
    }
  }
  settle(waitingLine + 1);
  return allowed;
}

}  // namespace

void silenceWarnings(const SyntaxTree& tree, const LineTable& lines,
                     std::vector<Diagnostic>& diagnostics) {
  AllowedCodes allowed = allowedIn(tree, lines);
  if (allowed.empty()) {
    return;
  }
  std::erase_if(diagnostics, [&](const Diagnostic& told) {
    if (told.severity != Severity::warning) {
      return false;
    }
    const SyntaxNode& node = tree[tree.nodeAt(told.at.at.begin)];
    const auto [begin, end] = allowed.equal_range({lines.at(node.begin).line, told.code});
    for (auto it = begin; it != end; ++it) {
      it->second.silences = true;
    }
    return begin != end;
  });
  for (const auto& [key, each] : allowed) {
    if (!each.silences) {
      diagnostics.push_back(
          {.severity = Severity::warning,
           .origin = Origin::checker,
           .code = std::string(code::silencesNothing),
           .at = {.at = each.at},
           .message =
               fmt::format("there is no warning '{}' here that could be silenced", key.second),
           .help = "remove the code from the comment"});
    }
  }
}

}  // namespace KESTparse
