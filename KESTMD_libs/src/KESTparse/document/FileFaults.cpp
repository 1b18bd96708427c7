#include "KESTparse/document/FileFaults.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <tuple>

#include "KESTparse/base/PlainText.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/document/SyntaxTree.h"

namespace KESTparse {
namespace {

/// How many faults of a kind are told of a file. What a program did to each row is one fault.
std::size_t mostOf(std::string_view code) {
  constexpr std::size_t usual = 20;
  return code == code::seriesSeparator || code == code::textInSeries ? 1 : usual;
}

/// Finds the lines of places that are asked for from the first to the last.
class LineCounter {
 public:
  explicit LineCounter(std::string_view text) : text_(text) {}

  FilePlace at(Span span) {
    while (true) {
      const void* const feed =
          std::memchr(text_.data() + lineBegin_, '\n', text_.size() - lineBegin_);
      const std::size_t next =
          feed == nullptr
              ? std::string_view::npos
              : static_cast<std::size_t>(static_cast<const char*>(feed) - text_.data()) + 1;
      if (next > span.begin || next == text_.size()) {
        break;
      }
      lineBegin_ = next;
      ++line_;
    }
    const auto column = [this](std::size_t end) {
      return static_cast<std::uint32_t>(
          countCodePoints(text_.substr(lineBegin_, end - lineBegin_)) + 1);
    };
    const std::uint32_t begin = column(span.begin);
    return {line_, begin, std::max(begin + 1, column(std::max(span.begin, span.end)))};
  }

 private:
  std::string_view text_;
  std::size_t lineBegin_ = 0;
  std::uint32_t line_ = 1;
};

bool isGap(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '"';
}

}  // namespace

bool FaultList::wants(std::string_view code) {
  return ++counts_[code] <= mostOf(code);
}

std::vector<PlacedFault> FaultList::placed(std::string_view text) {
  if (faults_.empty()) {
    return {};
  }
  std::stable_sort(faults_.begin(), faults_.end(),
                   [](const FileFault& a, const FileFault& b) { return a.at.begin < b.at.begin; });
  std::vector<PlacedFault> placed;
  std::vector<std::tuple<Span, FilePlace*>> wanted;
  std::map<std::string_view, PlacedFault*> last;
  placed.reserve(faults_.size());
  for (FileFault& fault : faults_) {
    PlacedFault& made = placed.emplace_back(
        PlacedFault{fault.code, {}, std::move(fault.message), std::move(fault.help)});
    made.related.reserve(fault.related.size());
    wanted.emplace_back(fault.at, &made.at);
    for (FileFault::Other& other : fault.related) {
      made.related.push_back({{}, std::move(other.message)});
      wanted.emplace_back(other.at, &made.related.back().at);
    }
    last[fault.code] = &made;
  }
  for (const auto& [code, fault] : last) {
    if (counts_[code] > mostOf(code)) {
      fault->help +=
          fmt::format("; the file has {} more of this kind", counts_[code] - mostOf(code));
    }
  }
  std::stable_sort(wanted.begin(), wanted.end(), [](const auto& a, const auto& b) {
    return std::get<Span>(a).begin < std::get<Span>(b).begin;
  });
  LineCounter lines(text);
  for (const auto& [span, place] : wanted) {
    *place = lines.at(span);
  }
  return placed;
}

Span lineAt(std::string_view text, std::size_t lineBegin) {
  std::size_t end = std::min(text.find('\n', lineBegin), text.size());
  end -= end > lineBegin && text[end - 1] == '\r' ? 1U : 0U;
  return {lineBegin, end};
}

Span wordAt(std::string_view text, std::size_t lineBegin, std::size_t number) {
  const Span line = lineAt(text, lineBegin);
  std::size_t at = line.begin;
  for (std::size_t i = 0;; ++i) {
    while (at < line.end && isGap(text[at])) {
      ++at;
    }
    if (at == line.end) {
      return line;
    }
    std::size_t end = at;
    while (end < line.end && !isGap(text[end])) {
      ++end;
    }
    if (i == number) {
      return {at, end};
    }
    at = end;
  }
}

bool findForeignText(std::string_view text, FaultList& faults) {
  const auto add = [&faults](std::string_view code, Span at, std::string message,
                             std::string help) {
    if (faults.wants(code)) {
      faults.add({code, at, std::move(message), std::move(help)});
    }
  };
  const TextForm form = formOfText(text);
  if (form.isBinary) {
    add(code::notText, {0, std::min<std::size_t>(1, text.size())},
        form.isWide ? "the file is in UTF-16, and not plain text" : "the file is not plain text",
        "save it as plain text in UTF-8");
    return false;
  }
  if (form.hasMark) {
    add(code::foreignEncoding, {0, utf8Mark.size()},
        "the file begins with a byte order mark, three invisible bytes that programs take for a "
        "part of the first word",
        "save it as UTF-8 without a byte order mark");
  }
  if (form.loneReturn != std::string_view::npos) {
    add(code::foreignLineEnds, {form.loneReturn, form.loneReturn + 1},
        "the line ends with a carriage return alone, which programs do not take for a line end",
        "save the file with line feeds as line ends");
  }
  if (form.invalidByte != std::string_view::npos) {
    add(code::foreignEncoding, {form.invalidByte, form.invalidByte + 1},
        "the file is not in UTF-8: programs refuse this byte, or show another letter",
        "save the file as UTF-8, or write plain letters");
  }
  return true;
}

}  // namespace KESTparse
