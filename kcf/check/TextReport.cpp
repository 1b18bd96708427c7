#include "check/TextReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

#include "KESTparse/base/Files.h"
#include "check/Excerpt.h"

namespace kcf {
namespace {

using KESTparse::Diagnostic;
using KESTparse::Edit;
using KESTparse::Fix;
using KESTparse::LineTable;
using KESTparse::Related;
using KESTparse::Severity;
using KESTparse::Span;

/// Escape sequences for what stands out.
namespace style {
constexpr std::string_view error = "\x1b[1;31m";
constexpr std::string_view warning = "\x1b[1;33m";
constexpr std::string_view message = "\x1b[1m";
constexpr std::string_view frame = "\x1b[1;34m";
constexpr std::string_view help = "\x1b[1;36m";
constexpr std::string_view added = "\x1b[32m";
constexpr std::string_view removed = "\x1b[31m";
constexpr std::string_view end = "\x1b[0m";
}  // namespace style

std::string painted(bool hasColors, std::string_view sequence, std::string_view text) {
  return hasColors ? fmt::format("{}{}{}", sequence, text, style::end) : std::string(text);
}

/// A file that is quoted.
struct Source {
  std::string text;
  LineTable lines;

  explicit Source(std::string content) : text(std::move(content)), lines(text) {}
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
};

std::string_view withoutReturn(std::string_view line) {
  return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

/// The bytes of a line up to the code point at `column`.
std::size_t bytesUpTo(std::string_view line, std::uint32_t column) {
  std::size_t bytes = 0;
  for (std::uint32_t at = 1; at < column && bytes < line.size(); ++at) {
    bool isValid = true;
    bytes += KESTparse::codePointLength(line.substr(bytes), isValid);
  }
  return bytes;
}

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  for (std::size_t feed = text.find('\n'); feed != std::string_view::npos; feed = text.find('\n')) {
    lines.push_back(withoutReturn(text.substr(0, feed)));
    text.remove_prefix(feed + 1);
  }
  lines.push_back(withoutReturn(text));
  return lines;
}

/// Writes the diagnostics of one file.
class Writer {
 public:
  Writer(const CheckedFile& file, bool hasColors, std::size_t columns, std::string& out)
      : file_(file), hasColors_(hasColors), columns_(columns), out_(out) {}

  void write(const Diagnostic& told) {
    const bool isError = told.severity == Severity::error;
    const std::string_view color = isError ? style::error : style::warning;
    const ShownPlace place = file_.placeOf(told.at);
    std::uint32_t lastLine = place.begin.line;
    for (const Related& related : told.related) {
      lastLine = std::max(lastLine, file_.placeOf(related.at).begin.line);
    }
    gutter_ = fmt::formatted_size("{}", lastLine);

    out_ +=
        painted(hasColors_, color, fmt::format("{}[{}]", isError ? "error" : "warning", told.code));
    out_ += painted(hasColors_, style::message, ": " + harmless(told.message)) + "\n";
    quote(place, "--> ", '^', color, "");
    for (const Related& related : told.related) {
      quote(file_.placeOf(related.at), "::: ", '-', style::frame, harmless(related.message));
    }
    if (!told.help.empty()) {
      remark("help", told.help);
    }
    for (const Fix& fix : told.fixes) {
      write(fix, told.help);
    }
    out_ += '\n';
  }

 private:
  /// What stands left of the text of a line.
  std::string margin(std::string_view sign, std::uint32_t line = 0) {
    const std::string number = line == 0 ? "" : std::to_string(line);
    return painted(hasColors_, style::frame, fmt::format("{:>{}} {}", number, gutter_, sign));
  }

  void remark(std::string_view kind, std::string_view text) {
    out_ += margin("= ") + painted(hasColors_, style::help, fmt::format("{}: ", kind)) +
            harmless(text) + "\n";
  }

  const Source* otherFile(const std::string& path) {
    auto known = others_.find(path);
    if (known == others_.end()) {
      known = others_.try_emplace(path, KESTparse::readFile(path).content).first;
    }
    return &known->second;
  }

  void quote(const ShownPlace& place, std::string_view arrow, char mark, std::string_view color,
             const std::string& label) {
    out_ += painted(hasColors_, style::frame, fmt::format("{:>{}}{}", "", gutter_, arrow)) +
            fmt::format("{}:{}:{}\n", harmless(place.file), place.begin.line, place.begin.column);
    const Source* const other = place.isInCommandFile ? nullptr : otherFile(place.file);
    const LineTable& lines = other == nullptr ? file_.lines() : other->lines;
    if (place.begin.line > lines.count()) {
      out_ += label.empty() ? "" : margin("= ") + label + "\n";
      return;
    }
    const std::string_view text = other == nullptr ? file_.text() : other->text;
    const std::string_view line = withoutReturn(lines.line(place.begin.line).in(text));
    const Span at{bytesUpTo(line, place.begin.column), place.end.line > place.begin.line
                                                           ? line.size()
                                                           : bytesUpTo(line, place.end.column)};
    const Excerpt excerpt = excerptOf(line, at, room());
    out_ += margin("|") + "\n";
    out_ += margin("| ", place.begin.line) + excerpt.text + "\n";
    out_ += margin("| ") + std::string(excerpt.indent, ' ') +
            painted(hasColors_, color,
                    std::string(excerpt.width, mark) + (label.empty() ? "" : " " + label)) +
            "\n";
  }

  /// Columns beside the margin.
  [[nodiscard]] std::size_t room() const {
    constexpr std::size_t least = 40;
    return std::max(least, columns_ - std::min(columns_, gutter_ + 3));
  }

  /// Shows the lines as a fix makes them.
  void write(const Fix& fix, std::string_view help) {
    if (fix.message != help) {
      remark("fix", fix.message);
    }
    std::vector<Edit> edits = fix.edits;
    std::stable_sort(edits.begin(), edits.end(), [](const Edit& one, const Edit& other) {
      return one.at.begin < other.at.begin;
    });
    for (std::size_t first = 0; first < edits.size();) {
      std::size_t behind = first + 1;
      std::uint32_t lastLine = file_.lines().at(edits[first].at.end).line;
      while (behind < edits.size() && file_.lines().at(edits[behind].at.begin).line <= lastLine) {
        lastLine = std::max(lastLine, file_.lines().at(edits[behind].at.end).line);
        ++behind;
      }
      showChange({edits.begin() + static_cast<std::ptrdiff_t>(first),
                  edits.begin() + static_cast<std::ptrdiff_t>(behind)},
                 lastLine);
      first = behind;
    }
  }

  /// Shows what edits make of the lines that they touch, the last of which is `lastLine`.
  void showChange(const std::vector<Edit>& edits, std::uint32_t lastLine) {
    const std::uint32_t firstLine = file_.lines().at(edits.front().at.begin).line;
    const Span before{file_.lines().line(firstLine).begin, file_.lines().line(lastLine).end};
    std::string after;
    std::size_t done = before.begin;
    for (const Edit& edit : edits) {
      after += Span{done, std::max(done, edit.at.begin)}.in(file_.text());
      after += edit.text;
      done = edit.at.end;
    }
    after += Span{done, before.end}.in(file_.text());
    std::vector<std::string_view> removed = linesOf(before.in(file_.text()));
    std::vector<std::string_view> added = linesOf(after);
    std::uint32_t number = firstLine;
    while (!removed.empty() && !added.empty() && removed.front() == added.front()) {
      removed.erase(removed.begin());
      added.erase(added.begin());
      ++number;
    }
    while (!removed.empty() && !added.empty() && removed.back() == added.back()) {
      removed.pop_back();
      added.pop_back();
    }
    // What stands there now was shown already, unless all of it goes.
    showLines(added.empty() ? removed : added, number, added.empty());
  }

  void showLines(const std::vector<std::string_view>& lines, std::uint32_t number,
                 bool areRemoved) {
    constexpr std::size_t most = 6;
    for (std::size_t i = 0; i < std::min(lines.size(), most); ++i) {
      const std::size_t begin = std::min(lines[i].find_first_not_of(" \t"), lines[i].size());
      const std::string text = excerptOf(lines[i], {begin, lines[i].size()}, room()).text;
      out_ += margin("", number++) +
              painted(hasColors_, areRemoved ? style::removed : style::added,
                      (areRemoved ? "- " : "+ ") + text) +
              "\n";
    }
    if (lines.size() > most) {
      out_ += margin("") + fmt::format("... and {} more lines\n", lines.size() - most);
    }
  }

  const CheckedFile& file_;
  bool hasColors_;
  std::size_t columns_;
  std::string& out_;
  std::size_t gutter_ = 1;
  std::map<std::string, Source> others_;
};

std::string counted(std::size_t count, std::string_view what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

}  // namespace

void TextReport::render(const CheckedFile& file, Part& part) const {
  Writer writer(file, hasColors_, columns_, part.diagnostics);
  for (const Diagnostic& told : file.diagnostics()) {
    writer.write(told);
  }
}

void TextReport::add(Part part) {
  *out_ << part.diagnostics;
  ++files_;
  errors_ += part.errors;
  warnings_ += part.warnings;
  if (firstCode_.empty()) {
    firstCode_ = std::move(part.firstCode);
  }
}

void TextReport::finish() {
  if (files_ == 0) {
    return;
  }
  const std::string files = counted(files_, "file");
  if (errors_ + warnings_ == 0) {
    *out_ << "no errors, no warnings in " << files << "\n";
    return;
  }
  std::string found = errors_ == 0 ? "" : counted(errors_, "error");
  if (warnings_ > 0) {
    found += (found.empty() ? "" : ", ") + counted(warnings_, "warning");
  }
  *out_ << painted(hasColors_, errors_ == 0 ? style::warning : style::error, found) << " in "
        << files << "\n"
        << "For what a code means: kcf explain " << firstCode_ << "\n";
}

}  // namespace kcf
