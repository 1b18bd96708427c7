/// \file
/// The grammar of command files: names, braces, tags with their values, and faults, each with its
/// place. It knows no schema and builds no tree.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "KESTparse/framework/InputParseError.h"

namespace KESTparse {

/// A stretch of a text, in bytes from its beginning.
struct Span {
  std::size_t begin = 0;
  std::size_t end = 0;

  [[nodiscard]] bool empty() const { return begin == end; }
  [[nodiscard]] std::size_t size() const { return end - begin; }
  [[nodiscard]] std::string_view in(std::string_view text) const {
    return text.substr(begin, size());
  }
  friend bool operator==(const Span&, const Span&) = default;
};

/// Blanks carriage returns and comments; what is left stands where it stood. `comments` gets their
/// places, without the line feed behind them.
void blankComments(std::vector<char>& text, std::vector<Span>* comments = nullptr);

inline bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-';
}

/// White space between names; it ends them.
inline bool isWhiteSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n';
}

/// Whether a block or a tag of that name can be written in a command file.
bool isWritableName(std::string_view name);

/// A fault of syntax.
struct SyntaxFault {
  ParseErrorKind kind;
  std::size_t at;  ///< the first byte that fits into nothing
  Span name;       ///< the name in front of it; may be empty
};

/// How a text ends.
struct Ending {
  /// Behind what the text ends: white space or a name, an opening brace, the begin of a value, or a
  /// closing brace without a byte behind it.
  enum class Behind { name, openingBrace, equals, closingBrace };
  Behind behind;
  Span name;       ///< the name that is open; may be empty
  std::size_t at;  ///< the brace or the equals sign; the size of the text behind a name
};

/// Sums of the parentheses of a text, to find those that are never closed.
class ParenthesisSums {
 public:
  explicit ParenthesisSums(std::string_view text);
  /// Whether a value that has `depth` open parentheses at `from` closes them all further on.
  [[nodiscard]] bool closes(std::size_t from, int depth) const;

 private:
  struct Place {
    std::size_t at;
    int sum;     // up to this place
    int lowest;  // from this place on
  };
  std::vector<Place> places_;
};

/// Reads `text`, which is blanked, and tells `events` what stands in it:
///
///     void open(Span name, std::size_t brace);
///     void close(std::size_t brace);
///     void tag(Span name, std::size_t equals, Span value);  // up to the line feed behind it
///     bool fault(const SyntaxFault& fault);                 // whether to go on behind it
///     void end(const Ending& ending);
///     static constexpr bool goesOn;                         // whether `fault` ever returns true
///
/// The byte behind an opening brace belongs to no name. Behind a fault, a name alone on
/// its line is left out, else what stands up to the next brace, equals sign or line feed is one
/// name; a list whose parenthesis is never closed ends with its line where the next one begins like
/// a tag or a block.
template <class Events>
class Scanner {
 public:
  Scanner(std::string_view text, Events& events) : text_(text), events_(&events) {}

  void run() {
    while (readItem()) {
    }
  }

 private:
  /// The first byte at or behind `at` that is no white space.
  [[nodiscard]] std::size_t skipWhiteSpace(std::size_t at) const {
    while (at < text_.size() && isWhiteSpace(text_[at])) {
      ++at;
    }
    return at;
  }

  /// Reads up to a brace or the end of a value. \return whether there is more.
  bool readItem() {
    Span name;
    name.begin = skipWhiteSpace(at_);
    name.end = name.begin;
    while (name.end < text_.size() && isNameCharacter(text_[name.end])) {
      ++name.end;
    }
    at_ = skipWhiteSpace(name.end);
    if (at_ == text_.size()) {
      events_->end({Ending::Behind::name, name, at_});
      return false;
    }
    switch (text_[at_]) {
      case '{':
        return (!name.empty() || told(ParseErrorKind::emptyBlockName, name)) && open(name);
      case '=':
        return (!name.empty() || told(ParseErrorKind::emptyTagName, name)) && readValue(name);
      case '}':
        return (name.empty() || told(ParseErrorKind::misplacedBrace, name)) && close(name);
      default:
        return told(!name.empty() && at_ > name.end ? ParseErrorKind::whiteSpaceInName
                                                    : ParseErrorKind::invalidNameCharacter,
                    name) &&
               readBehindFault(name);
    }
  }

  bool told(ParseErrorKind kind, Span name) { return events_->fault({kind, at_, name}); }

  bool open(Span name) {
    events_->open(name, at_);
    if (at_ + 1 >= text_.size()) {
      events_->end({Ending::Behind::openingBrace, name, at_});
      return false;
    }
    at_ += 2;
    return true;
  }

  bool close(Span name) {
    events_->close(at_);
    if (at_ + 1 >= text_.size()) {
      events_->end({Ending::Behind::closingBrace, Span{name.end, name.end}, at_});
      return false;
    }
    ++at_;
    return true;
  }

  bool readValue(Span name) {
    const std::size_t equals = at_;
    int depth = 0;
    std::size_t at = equals + 1;
    for (;; ++at) {
      // Only these characters mean anything in a value. A search of the library calls a function
      // for each character, which shows in long lists.
      while (at < text_.size() && text_[at] != '\n' && text_[at] != '(' && text_[at] != ')') {
        ++at;
      }
      if (at == text_.size()) {
        events_->end({Ending::Behind::equals, name, equals});
        return false;
      }
      const char c = text_[at];
      if (c == '(') {
        ++depth;
      } else if (c == ')' && depth > 0) {
        --depth;
      } else if (c == ')') {
        at_ = at;
        if (!told(ParseErrorKind::tagValue, name)) {
          return false;
        }
      } else if (depth == 0 || isLeftOpen(name, at, depth)) {
        break;
      } else if constexpr (Events::goesOn) {
        // The same would be found at each of the line feeds that follow.
        at = skipWhiteSpace(at) - 1;
      }
    }
    events_->tag(name, equals, {equals + 1, at});
    at_ = at + 1;
    return true;
  }

  /// Whether the list that goes on at the line feed at `feed` is one whose closing parenthesis is
  /// missing.
  bool isLeftOpen(Span name, std::size_t feed, int depth) {
    if constexpr (Events::goesOn) {
      const std::size_t next = skipWhiteSpace(feed);
      std::size_t behind = next;
      while (behind < text_.size() && isNameCharacter(text_[behind])) {
        ++behind;
      }
      behind = skipWhiteSpace(behind);
      const bool isItem = behind < text_.size() &&
                          (text_[behind] == '}' ||
                           (behind > next && (text_[behind] == '{' || text_[behind] == '=')));
      if (!isItem) {
        return false;
      }
      if (sums_.empty()) {
        sums_.emplace_back(text_);
      }
      if (sums_.front().closes(feed, depth)) {
        return false;
      }
      at_ = feed;
      return told(ParseErrorKind::endOfFile, name);
    }
    return false;
  }

  /// Goes on behind a fault in a name.
  bool readBehindFault(Span name) {
    // A name alone on its line belongs to nothing that follows.
    if (!name.empty() &&
        text_.substr(name.end, at_ - name.end).find('\n') != std::string_view::npos) {
      return true;
    }
    at_ = std::min(text_.find_first_of("\n{}=", at_), text_.size());
    name.end = at_;
    while (name.end > name.begin && isWhiteSpace(text_[name.end - 1])) {
      --name.end;
    }
    if (at_ < text_.size() && text_[at_] == '{') {
      return open(name);
    }
    if (at_ < text_.size() && text_[at_] == '=') {
      return readValue(name);
    }
    return true;
  }

  std::string_view text_;
  Events* events_;
  std::size_t at_ = 0;
  std::vector<ParenthesisSums> sums_;  // made when a list may be left open; one at most
};

}  // namespace KESTparse
