#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <utility>

#include "ExplanationWords.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/Suggestion.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/document/Explanations.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

/// What begins a comment in other languages.
constexpr std::array<std::string_view, 8> commentSigns{"#", "!", "%", ";", "--", "/", "**", "REM "};

/// A sign of another language at the front of `text`; empty when there is none.
std::string_view commentSignOf(std::string_view text) {
  for (const std::string_view sign : commentSigns) {
    if (text.starts_with(sign)) {
      return trimmed(text.substr(0, sign.size()));
    }
  }
  return {};
}

class SyntaxDoctor {
 public:
  explicit SyntaxDoctor(const FaultySyntax& faulty)
      : faulty_(&faulty),
        tree_(&faulty.tree),
        node_(&faulty.tree[faulty.fault.node]),
        at_(faulty.fault.at),
        words_(at_.in(faulty.tree.blanked())) {
    diagnostic_.at.at = at_;
  }

  Diagnostic explain() {
    switch (faulty_->fault.kind) {
      case TreeFault::missingClosingBrace:
        missingClosingBrace();
        break;
      case TreeFault::missingOpeningBrace:
        missingOpeningBrace();
        break;
      case TreeFault::strayClosingBrace:
        tell(code::strayClosingBrace, "this '}' closes no block",
             "remove it, or write the header of the block that it is to close");
        fix("remove the '}'", {{at_, ""}});
        break;
      case TreeFault::missingName:
        missingName();
        break;
      case TreeFault::missingEquals:
        severalWords();
        break;
      case TreeFault::strayText:
        strayText();
        break;
      case TreeFault::invalidName:
        invalidName();
        break;
      case TreeFault::unopenedParenthesis:
        unopenedParenthesis();
        break;
      case TreeFault::unclosedList:
        unclosedList();
        break;
      case TreeFault::unfinished:
        unfinished();
        break;
      case TreeFault::byteOrderMark:
        tell(code::byteOrderMark, "the file begins with a byte order mark, which counts as text",
             "save the file as UTF-8 without a byte order mark");
        fix("remove the byte order mark", {{at_, ""}});
        break;
      case TreeFault::swallowedByte:
        swallowedByte();
        break;
    }
    return std::move(diagnostic_);
  }

 private:
  void tell(std::string_view code, std::string message, std::string help) {
    diagnostic_.code = code;
    diagnostic_.message = std::move(message);
    diagnostic_.help = std::move(help);
  }

  void fix(std::string message, std::vector<Edit> edits) {
    diagnostic_.fixes.push_back({std::move(message), std::move(edits)});
  }

  [[nodiscard]] bool isTag(std::string_view name) const {
    return faulty_->block != nullptr && faulty_->block->getLogicalTagPosition(name) >= 0;
  }

  [[nodiscard]] bool isBlock(std::string_view name) const {
    return faulty_->block != nullptr && faulty_->block->getLogicalBlockPosition(name) >= 0;
  }

  /// "'FRICTION'", or what stands for the whole file.
  [[nodiscard]] std::string place() const {
    const InputBlock* const block = faulty_->block;
    return block == nullptr || block->getActualParent() == nullptr ? std::string("the file")
                                                                   : quotedText(block->getName());
  }

  /// The names that may stand here, as a list; empty when there are too many or none is known.
  [[nodiscard]] static std::string choices(const std::vector<std::string_view>& names) {
    constexpr std::size_t most = 12;
    if (names.empty() || names.size() > most) {
      return {};
    }
    return quotedList(std::vector<std::string>(names.begin(), names.end()));
  }

  void missingClosingBrace() {
    const std::string_view text = tree_->text();
    const std::string name = quotedText(node_->name().in(text));
    tell(code::missingClosingBrace, fmt::format("the block {} is not closed", name), {});
    const std::size_t end = node_->end;
    const std::size_t next = tree_->blanked().find_first_not_of(" \t\n", end);
    const std::string indentation(indentationAt(text, node_->begin));
    Edit edit{{end, end}, "\n" + indentation + "}"};
    if (next == std::string_view::npos) {
      diagnostic_.help = fmt::format("write '}}' at the end of the file to close {}", name);
      edit.text += end == text.size() ? "\n" : "";
    } else {
      const std::uint32_t line = faulty_->lines.at(next).line;
      const std::size_t last = std::min(text.find('\n', next), text.size());
      const Span words{next, next + trimmed(tree_->blanked().substr(next, last - next)).size()};
      if (closesByWords(words.in(text))) {
        tell(code::missingClosingBrace,
             fmt::format("the block {} is closed by '}}' and not by {}", name,
                         quotedText(words.in(text))),
             "write '}' in its place");
        diagnostic_.at.at = words;
        diagnostic_.related.push_back({{.at = node_->name()}, "the block begins here"});
        fix("write '}' in its place", {{words, "}"}});
        return;
      }
      diagnostic_.help = fmt::format("write '}}' before line {}, which is {}", line,
                                     quotedText(trimmed(text.substr(next, last - next))));
      Related& related = diagnostic_.related.emplace_back();
      related.at.at = {next, last};
      related.message = "a '}' is missing in front of this line";
      if (text.substr(end, next - end).find('\n') == std::string_view::npos) {
        edit.text = " }";
      }
    }
    fix("write the missing '}'", {std::move(edit)});
  }

  /// Whether a line closes a block as other languages do: "END", "end BOUNDARY", "EndBoundary".
  [[nodiscard]] bool closesByWords(std::string_view line) const {
    constexpr std::string_view end = "END";
    const std::string words = toUpper(line);
    std::string_view rest = words;
    if (!rest.starts_with(end)) {
      return false;
    }
    rest.remove_prefix(end.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t_-"), rest.size()));
    return rest.empty() || rest == "BLOCK" || rest == node_->name().in(tree_->text());
  }

  void missingOpeningBrace() {
    const Span name = node_->name();
    const std::string quoted = quotedText(name.in(tree_->text()));
    const std::string help = fmt::format("write '{} {{'", name.in(tree_->text()));
    const std::string_view sign = trimmed(words_.substr(name.size()));
    if (sign.empty()) {
      tell(code::missingOpeningBrace, fmt::format("the '{{' behind {} is missing", quoted), help);
      fix("write the missing '{'", {{{name.end, name.end}, " {"}});
      return;
    }
    const std::size_t begin = at_.begin + static_cast<std::size_t>(sign.data() - words_.data());
    diagnostic_.at.at = {begin, begin + 1};
    if (sign.front() == '=') {
      tell(code::invalidName, fmt::format("an equals sign stands between {} and its '{{'", quoted),
           help);
      fix("remove the '='", {{{name.end, at_.end}, " {"}});
    } else {
      tell(code::missingOpeningBrace,
           fmt::format("{} stands in place of the '{{' behind {}", quotedText(sign), quoted), help);
      fix("write '{' in its place", {{{name.end, at_.end}, " {"}});
    }
  }

  void missingName() {
    const bool opens = words_ == "{";
    std::string names;
    if (faulty_->block != nullptr) {
      names = choices(opens ? blockNamesOf(*faulty_->block) : tagNamesOf(*faulty_->block));
    }
    const std::string_view what = opens ? "block" : "tag";
    tell(code::missingName,
         fmt::format("the name of the {} in front of '{}' is missing", what, words_),
         fmt::format("write the name of the {} in front of it{}{}", what,
                     names.empty() ? "" : ", one of ", names));
  }

  /// Several words on a line.
  void severalWords() {
    const std::size_t end = words_.find_first_of(" \t");
    const std::string_view first = words_.substr(0, end);
    const std::string_view rest =
        end == std::string_view::npos ? std::string_view() : trimmed(words_.substr(end));
    if (!commentSignOf(words_).empty()) {
      comment();
      return;
    }
    if (rest.starts_with(':') && isWritableName(first)) {
      colon(first, rest.substr(1),
            {at_.begin + first.size(),
             at_.begin + static_cast<std::size_t>(rest.data() + 1 - words_.data())});
      return;
    }
    const std::size_t arrow = std::min(rest.find_first_not_of("-<>~"), rest.size());
    if (isTag(first) && rest.substr(0, arrow).find_first_of("<>~") != std::string_view::npos) {
      const std::size_t begin = at_.begin + static_cast<std::size_t>(rest.data() - words_.data());
      tell(code::missingEquals,
           fmt::format("{} stands in place of the equals sign behind {}",
                       quotedText(rest.substr(0, arrow)), quotedText(first)),
           fmt::format("write '{} = {}'", first, trimmed(rest.substr(arrow))));
      diagnostic_.at.at = {begin, begin + arrow};
      fix("write '=' in its place", {{diagnostic_.at.at, "="}});
      return;
    }
    if (isBlock(first)) {
      tell(code::strayText,
           fmt::format("{} stands behind the name of the block {}", quotedText(rest),
                       quotedText(first)),
           fmt::format("write '{} {{' on this line, and what belongs to the block below", first));
      return;
    }
    const std::string_view meant = faulty_->block == nullptr || isTag(first)
                                       ? first
                                       : nearestName(first, tagNamesOf(*faulty_->block));
    if (meant.empty()) {
      tell(code::strayText,
           fmt::format("{} is neither a tag with its value nor a block", quotedText(words_)),
           "write it as 'name = value', or put '//' in front of it if it is a comment");
      return;
    }
    tell(code::missingEquals,
         fmt::format("the equals sign between {} and {} is missing", quotedText(first),
                     quotedText(rest)),
         fmt::format("write '{} = {}'", meant, rest));
    if (isTag(first)) {
      fix("write the missing '='", {{{at_.begin + first.size(), at_.begin + first.size()}, " ="}});
    }
  }

  void comment() {
    const std::string_view sign = commentSignOf(words_);
    if (trimmed(words_) == sign) {
      tell(code::strayText, fmt::format("{} stands alone and means nothing", quotedText(sign)),
           "remove it: lines and blocks end without a sign");
      fix(fmt::format("remove {}", quotedText(sign)), {{at_, ""}});
      return;
    }
    tell(code::strayText, fmt::format("{} does not begin a comment", quotedText(sign)),
         "begin the comment with '//'");
    if (node_->kind != NodeKind::block) {
      fix("begin the comment with '//'", {{{at_.begin, at_.begin + sign.size()}, "//"}});
    }
    diagnostic_.at.at.end = at_.begin + sign.size();
  }

  /// A colon in place of an equals sign, which it stands for from `old` on.
  void colon(std::string_view name, std::string_view value, Span old) {
    tell(code::missingEquals,
         fmt::format("a ':' stands in place of the equals sign behind {}", quotedText(name)),
         fmt::format("write '{} = {}'", name, trimmed(value)));
    diagnostic_.at.at = {old.end - 1, old.end};
    if (!trimmed(value).empty()) {
      fix("write '=' in place of ':'",
          {{old, value.starts_with(' ') || value.starts_with('\t') ? " =" : " = "}});
    }
  }

  void strayText() {
    if (!commentSignOf(words_).empty()) {
      comment();
      return;
    }
    if (noBreakSpace()) {
      return;
    }
    if (isWritableName(words_)) {
      nameAlone();
      return;
    }
    std::size_t end = 0;
    while (end < words_.size() && isNameCharacter(words_[end])) {
      ++end;
    }
    const std::string_view first = words_.substr(0, end);
    if (!first.empty() && words_[end] == ':') {
      colon(first, words_.substr(end + 1), {at_.begin + end, at_.begin + end + 1});
      return;
    }
    if (words_ == "," || words_ == "." || words_ == ":") {
      tell(code::strayText, fmt::format("{} stands alone and means nothing", quotedText(words_)),
           "remove it: lines and blocks end without a sign");
      fix(fmt::format("remove {}", quotedText(words_)), {{at_, ""}});
      return;
    }
    tell(code::strayText,
         fmt::format("{} is neither a tag with its value nor a block", quotedText(words_)),
         "write it as 'name = value', or put '//' in front of it if it is a comment");
  }

  /// Blanks that are none, as they come with copied text.
  bool noBreakSpace() {
    constexpr std::string_view space = "\u00a0";
    if (words_.find(space) == std::string_view::npos) {
      return false;
    }
    tell(code::strayText, "a no-break space stands here, which looks like a blank but is none",
         "type a blank in place of it");
    std::vector<Edit> edits;
    for (std::size_t i = words_.find(space); i != std::string_view::npos;
         i = words_.find(space, i + 1)) {
      edits.push_back({{at_.begin + i, at_.begin + i + space.size()}, " "});
    }
    diagnostic_.at.at = edits.front().at;
    fix("write blanks", std::move(edits));
    return true;
  }

  /// A name without a brace or an equals sign.
  void nameAlone() {
    if (isBlock(words_)) {
      tell(code::missingOpeningBrace,
           fmt::format("the '{{' behind {} is missing", quotedText(words_)),
           fmt::format("write '{} {{', and '}}' behind what belongs to the block", words_));
      return;
    }
    if (isTag(words_)) {
      tell(code::missingEquals,
           fmt::format("the equals sign and the value behind {} are missing", quotedText(words_)),
           fmt::format("write '{} = ' and a value, or remove {}", words_, quotedText(words_)));
      return;
    }
    tell(code::strayText,
         fmt::format("{} stands alone: it is neither a tag with its value nor a block",
                     quotedText(words_)),
         {});
    if (faulty_->block != nullptr) {
      const std::string_view block = nearestName(words_, blockNamesOf(*faulty_->block));
      const std::string_view tag = nearestName(words_, tagNamesOf(*faulty_->block));
      if (!block.empty() || !tag.empty()) {
        diagnostic_.help = tag.empty()
                               ? fmt::format("write '{} {{' if the block is meant", block)
                               : fmt::format("write '{} = ' and a value if the tag is meant", tag);
        return;
      }
    }
    diagnostic_.help = "remove it, or put '//' in front of it if it is a comment";
  }

  /// A name with what it must not hold, in front of a brace or an equals sign.
  void invalidName() {
    const bool opens = node_->kind == NodeKind::block;
    if (!commentSignOf(words_).empty()) {
      comment();
      return;
    }
    if (noBreakSpace()) {
      return;
    }
    std::string plain(words_);
    std::erase_if(plain, [](char c) { return c == '"' || c == '\'' || c == '`'; });
    const std::string_view what = opens ? "block" : "tag";
    if (plain.size() != words_.size()) {
      tell(code::invalidName, fmt::format("the name of the {} stands in quotes", what),
           fmt::format("write {} without quotes", plain));
      fixName(plain);
      return;
    }
    if (words_.ends_with(':')) {
      plain = trimmed(words_.substr(0, words_.size() - 1));
      tell(code::invalidName,
           fmt::format("a ':' stands behind the name of the {} {}", what, quotedText(plain)),
           fmt::format("write '{} {}'", plain, opens ? "{" : "="));
      fixName(plain);
      diagnostic_.at.at.begin = at_.end - 1;
      return;
    }
    std::string joined(words_);
    std::replace_if(
        joined.begin(), joined.end(), [](char c) { return !isNameCharacter(c); }, '_');
    if (opens ? isBlock(joined) : isTag(joined)) {
      tell(code::invalidName,
           fmt::format("{} is no name, since a name is one word of letters, digits, '_' and '-'",
                       quotedText(words_)),
           fmt::format("write {}", quotedText(joined)));
      fixName(joined);
      return;
    }
    const std::size_t blank = words_.find_first_of(" \t");
    const std::string_view first = words_.substr(0, blank);
    if (blank != std::string_view::npos && isWritableName(first)) {
      twoNames(first, trimmed(words_.substr(blank)), opens);
      return;
    }
    const auto begin = static_cast<std::size_t>(
        std::find_if(words_.begin(), words_.end(), [](char c) { return !isNameCharacter(c); }) -
        words_.begin());
    bool isValid = true;
    const std::size_t length =
        begin < words_.size() ? codePointLength(words_.substr(begin), isValid) : 0;
    tell(code::invalidName,
         fmt::format("{} cannot stand in the name of a {}",
                     isValid ? quotedText(words_.substr(begin, length)) : "this sign", what),
         "write the name with letters, digits, '_' and '-' only");
    diagnostic_.at.at = {at_.begin + begin, at_.begin + begin + length};
  }

  void fixName(const std::string& name) {
    const bool opens = node_->kind == NodeKind::block;
    if (opens ? isBlock(name) : isTag(name)) {
      fix(fmt::format("write {}", quotedText(name)), {{at_, name}});
    }
  }

  /// Two words in front of a brace or an equals sign.
  void twoNames(std::string_view first, std::string_view rest, bool opens) {
    const Span behind{at_.begin + static_cast<std::size_t>(rest.data() - words_.data()), at_.end};
    diagnostic_.at.at = behind;
    if (opens && isBlock(first)) {
      tell(code::invalidName,
           fmt::format("{} stands between {} and its '{{'", quotedText(rest), quotedText(first)),
           fmt::format("write '{} {{', and give a name within the block by its own tag", first));
      return;
    }
    if (isTag(first)) {
      tell(code::missingEquals,
           fmt::format("the equals sign between {} and {} is missing", quotedText(first),
                       quotedText(rest)),
           fmt::format("write '{} = ' and its value on a line of its own", first));
      return;
    }
    if (isWritableName(rest) && (opens ? isBlock(rest) : isTag(rest))) {
      diagnostic_.at.at = {at_.begin, at_.begin + first.size()};
      tell(code::invalidName,
           fmt::format("{} stands in front of {}, where it means nothing", quotedText(first),
                       quotedText(rest)),
           fmt::format("remove {}", quotedText(first)));
      return;
    }
    diagnostic_.at.at = at_;
    tell(code::invalidName,
         fmt::format("{} is no name, since a name is one word", quotedText(words_)),
         "write one word of letters, digits, '_' and '-'");
  }

  void unopenedParenthesis() {
    const std::string_view name = node_->name().in(tree_->text());
    const Span value = tree_->valueOf(*node_);
    const std::size_t opening = tree_->blanked().find('(', value.begin);
    const bool hasOpening = opening < at_.begin;
    const bool mayBeList = isListTag(name);
    tell(code::strayParenthesis,
         fmt::format("this ')' of {} closes no parenthesis", quotedText(name)),
         mayBeList && !hasOpening ? "write '(' in front of the list" : "remove it");
    if (mayBeList && !hasOpening && value.end == at_.end) {
      fix("write '(' in front of the list", {{{value.begin, value.begin}, "("}});
    } else if (!mayBeList || hasOpening) {
      fix("remove the ')'", {{at_, ""}});
    }
  }

  [[nodiscard]] bool isListTag(std::string_view name) const {
    const int position =
        faulty_->block == nullptr ? -1 : faulty_->block->getLogicalTagPosition(name);
    if (position < 0) {
      return false;
    }
    switch (traitsOf(faulty_->block->getLogicalTag(static_cast<std::size_t>(position))).kind) {
      case ValueKind::integers:
      case ValueKind::reals:
      case ValueKind::words:
      case ValueKind::outputValues:
      case ValueKind::namedReals:
        return true;
      default:
        return false;
    }
  }

  /// The parenthesis of the value of the node that is not closed.
  [[nodiscard]] Span openParenthesis(Span value) const {
    const std::string_view text = value.in(tree_->blanked());
    int depth = 0;
    for (std::size_t i = text.size(); i > 0; --i) {
      const char c = text[i - 1];
      depth += c == ')' ? 1 : c == '(' ? -1 : 0;
      if (depth < 0) {
        return {value.begin + i - 1, value.begin + i};
      }
    }
    return node_->name();
  }

  void unclosedList() {
    const std::string_view name = node_->name().in(tree_->text());
    const Span value = tree_->valueOf(*node_);
    tell(code::unclosedList, fmt::format("the list of {} is not closed", quotedText(name)),
         "write ')' behind its last item");
    diagnostic_.at.at = openParenthesis(value);
    fix("write the missing ')'", {{{value.end, value.end}, ")"}});
  }

  void unfinished() {
    const std::string_view text = tree_->text();
    const std::string_view name = node_->name().in(text);
    if (node_->kind == NodeKind::block) {
      tell(code::unfinishedFile,
           fmt::format("the file ends right behind the '{{' of {}", quotedText(name)),
           "write what belongs to the block, and '}' behind it");
      return;
    }
    const Span value = tree_->valueOf(*node_);
    const Span open = openParenthesis(value);
    if (open != node_->name()) {
      tell(code::unclosedList,
           fmt::format("the list of {} is not closed up to the end of the file", quotedText(name)),
           "write ')' behind its last item");
      diagnostic_.at.at = open;
      return;
    }
    tell(code::unfinishedFile, fmt::format("the file ends within the line of {}", quotedText(name)),
         "end the last line with a line break");
    fix("end the line", {{{text.size(), text.size()}, "\n"}});
  }

  void swallowedByte() {
    const std::string_view text = tree_->text();
    const std::string block = quotedText(node_->name().in(text));
    std::size_t end = at_.begin;
    while (end < text.size() && isNameCharacter(text[end])) {
      ++end;
    }
    const std::string_view word = text.substr(at_.begin, end - at_.begin);
    bool isValid = true;
    codePointLength(text.substr(at_.begin), isValid);
    const std::string sign = isValid && static_cast<unsigned char>(words_.front()) < 0x80
                                 ? quotedText(words_)
                                 : std::string("the sign");
    std::string sentence = fmt::format("{} right behind the '{{' of {} is skipped", sign, block);
    if (words_ == "}") {
      sentence += ", so that the block stays open";
    } else if (word.size() > 1) {
      sentence +=
          fmt::format(", so that {} is read as {}", quotedText(word), quotedText(word.substr(1)));
    }
    const bool isTooMany = words_ == "}" && node_->end != at_.end;
    if (isTooMany) {
      tell(code::swallowedByte, std::move(sentence), "remove it: the block is closed further down");
      fix("remove the '}'", {{at_, ""}});
      return;
    }
    tell(code::swallowedByte, std::move(sentence), "put a blank or a line break behind the '{'");
    fix("put a blank behind the '{'", {{{at_.begin, at_.begin}, " "}});
  }

  const FaultySyntax* faulty_;
  const SyntaxTree* tree_;
  const SyntaxNode* node_;
  Span at_;
  std::string_view words_;
  Diagnostic diagnostic_;
};

}  // namespace

Diagnostic explainSyntax(const FaultySyntax& faulty) {
  return SyntaxDoctor(faulty).explain();
}

}  // namespace KESTparse
