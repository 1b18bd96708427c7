#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

#include "ExplanationWords.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/base/Suggestion.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/document/Explanations.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/InputTagList.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

constexpr std::string_view digits = "0123456789";

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isReal(std::string_view text) {
  return realSyntaxFault(text).empty();
}

bool isInteger(std::string_view text) {
  return integerSyntaxFault(text).empty() && text != "-";
}

/// The length of the real number at the front of `text`, as people write it; 0 when there is none.
std::size_t numberLength(std::string_view text) {
  const auto behindDigits = [text](std::size_t at) {
    return std::min(text.find_first_not_of(digits, at), text.size());
  };
  const std::size_t begin = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  std::size_t end = behindDigits(begin);
  std::size_t count = end - begin;
  if (end < text.size() && text[end] == '.') {
    count += behindDigits(end + 1) - end - 1;
    end = behindDigits(end + 1);
  }
  if (count == 0) {
    return 0;
  }
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    std::size_t exponent = end + 1;
    if (exponent < text.size() && (text[exponent] == '-' || text[exponent] == '+')) {
      ++exponent;
    }
    if (behindDigits(exponent) > exponent) {
      end = behindDigits(exponent);
    }
  }
  return end;
}

/// Words as people list them: "a, b or c".
std::string alternatives(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    text += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
  }
  return text;
}

/// The same in quotes: "'a', 'b' or 'c'".
std::string choicesText(std::vector<std::string> words) {
  for (std::string& word : words) {
    word = quotedText(word);
  }
  return alternatives(words);
}

/// The bare unit of a tag, as a sentence shows it; empty for none and for "[-]".
std::string unitOf(const InputTag& tag) {
  std::string unit = withSigns(tag.getUnit());
  if (unit.starts_with('[') && unit.find(']') == unit.size() - 1) {
    unit = unit.substr(1, unit.size() - 2);
  }
  // Of several, each has its own word behind it.
  if (unit.starts_with('[')) {
    unit.erase(unit.find_last_not_of('.') + 1);
    std::vector<std::string> pieces;
    for (const std::string& piece : split(",", unit)) {
      const std::size_t end = piece.find(']');
      const std::size_t begin = piece.find('[');
      if (begin > end || end == std::string::npos) {
        return unit;
      }
      pieces.push_back(fmt::format("{} ({})", piece.substr(begin + 1, end - begin - 1),
                                   trimmed(std::string_view(piece).substr(end + 1))));
    }
    return alternatives(pieces);
  }
  return unit.starts_with('-') ? std::string() : unit;
}

/// A unit in a form that leaves out how it is written.
std::string plainUnit(std::string_view written) {
  std::string unit(written);
  constexpr std::array<std::pair<std::string_view, std::string_view>, 8> signs{
      {{"\u00b2", "2"},
       {"\u00b3", "3"},
       {"\u207b", "-"},
       {"\u00b9", "1"},
       {"\u00b0", "deg"},
       {"\u2030", "permill"},
       {"**", ""},
       {"s-1", "/s"}}};
  std::erase_if(
      unit, [](char c) { return std::string_view(" ^[]{}()").find(c) != std::string_view::npos; });
  for (const auto& [sign, letters] : signs) {
    replaceAll(unit, sign, letters);
  }
  const std::string upper = toUpper(unit);
  constexpr std::array<std::pair<std::string_view, std::string_view>, 14> words{
      {{"METER", "m"},
       {"METERS", "m"},
       {"METRE", "m"},
       {"METRES", "m"},
       {"MA.S.L.", "m"},
       {"M.A.S.L", "m"},
       {"MASL", "m"},
       {"MREL.", "m"},
       {"SEC", "s"},
       {"SECOND", "s"},
       {"SECONDS", "s"},
       {"DEGREE", "deg"},
       {"DEGREES", "deg"},
       {"PERMILLE", "permill"}}};
  for (const auto& [word, sign] : words) {
    if (upper == word) {
      return std::string(sign);
    }
  }
  return unit;
}

/// How many of `unit` the unit that was `written` is; 0 when that is not known.
double factorOf(std::string_view written, std::string_view unit) {
  struct Scale {
    std::string_view unit;
    std::string_view written;  // with blanks around each word
    double factor;
  };
  constexpr std::array<Scale, 13> scales{{{"s", " min minute minutes ", 60},
                                          {"s", " h hour hours hrs ", 3600},
                                          {"s", " d day days ", 86400},
                                          {"m", " mm ", 0.001},
                                          {"m", " cm ", 0.01},
                                          {"m", " dm ", 0.1},
                                          {"m", " km ", 1000},
                                          {"mm", " cm ", 10},
                                          {"mm", " m ", 1000},
                                          {"permill", " % percent ", 10},
                                          {"m3/s", " l/s ", 0.001},
                                          {"kg/m3", " g/cm3 ", 1000},
                                          {"kg/m3", " t/m3 ", 1000}}};
  const std::string word = fmt::format(" {} ", plainUnit(written));
  const std::string wanted = plainUnit(unit);
  const Scale* const scale = std::find_if(scales.begin(), scales.end(), [&](const Scale& each) {
    return each.unit == wanted && each.written.find(word) != std::string_view::npos;
  });
  return scale == scales.end() ? 0 : scale->factor;
}

/// The range of `name` with plain signs, such as "0 < CFL <= 1"; empty without bounds.
std::string rangeOf(const Range<double>& range, std::string_view name) {
  std::string text;
  const auto sign = [](bool isInclusive) { return isInclusive ? "<=" : "<"; };
  if (range.hasLower && range.hasUpper) {
    return fmt::format("{} {} {} {} {}", doubleToString(range.lower), sign(range.lowerInclusive),
                       name, sign(range.upperInclusive), doubleToString(range.upper));
  }
  if (range.hasLower) {
    return fmt::format("{} {} {}", name, range.lowerInclusive ? ">=" : ">",
                       doubleToString(range.lower));
  }
  return range.hasUpper ? fmt::format("{} {} {}", name, sign(range.upperInclusive),
                                      doubleToString(range.upper))
                        : std::string();
}

/// A change of a value, by places in it.
struct Change {
  Span at;
  std::string text;
};

/// What went wrong in a value.
struct Slip {
  Span at;  ///< in the value
  std::string message;
  std::string help;
  std::vector<Change> changes = {};  ///< what would mend it
  std::string fix = {};              ///< what these do; empty for "write" and the value
  std::string_view code = {};        ///< empty for that of the kind
};

/// The word that was likely meant, and whether it can be nothing else.
struct Likely {
  std::string word;
  bool isCertain = false;
};

/// A word without what is easily mistaken in it.
std::string blurred(std::string_view word) {
  std::string text = toUpper(word);
  std::erase_if(text, [](char c) { return c == '_' || c == '-' || c == ' '; });
  return text;
}

Likely likelyWord(std::string_view written, const std::vector<std::string>& known) {
  const auto only = [&known](auto isMeant) {
    const auto first = std::find_if(known.begin(), known.end(), isMeant);
    const bool isOnly = first != known.end() && std::none_of(first + 1, known.end(), isMeant);
    return Likely{isOnly ? *first : std::string(), isOnly};
  };
  const std::string upper = toUpper(written);
  Likely likely = only([&](const std::string& word) { return toUpper(word) == upper; });
  if (!likely.isCertain) {
    likely = only([&](const std::string& word) { return blurred(word) == blurred(written); });
  }
  constexpr std::size_t shortest = 3;
  if (!likely.isCertain && written.size() >= shortest) {
    likely = only([&](const std::string& word) {
      return word.size() >= shortest && editDistance(upper, toUpper(word), 1) == 1;
    });
  }
  if (!likely.isCertain && written.size() >= 2) {
    likely = {only([&](const std::string& word) { return word.starts_with(written); }).word};
  }
  if (likely.word.empty()) {
    likely.word = std::string(
        nearestName(written, std::vector<std::string_view>(known.begin(), known.end())));
  }
  return likely;
}

/// The allowed word that says yes or no as `written` does; empty when there is none.
std::string sameAnswer(std::string_view written, const std::vector<std::string>& allowed) {
  constexpr std::array<std::array<std::string_view, 8>, 2> answers{
      {{"YES", "ON", "TRUE", "1", "Y", "T", ".TRUE.", "JA"},
       {"NO", "OFF", "FALSE", "0", "N", "F", ".FALSE.", "NEIN"}}};
  const std::string upper = toUpper(written);
  for (const auto& words : answers) {
    if (std::find(words.begin(), words.end(), upper) == words.end()) {
      continue;
    }
    std::string found;
    for (const std::string& word : allowed) {
      if (std::find(words.begin(), words.end(), toUpper(word)) != words.end()) {
        if (!found.empty()) {
          return {};
        }
        found = word;
      }
    }
    return found;
  }
  return {};
}

/// What is wrong with one number, and how it would be right.
struct NumberSlip {
  Span at;  ///< in the number
  std::string message;
  std::string help;
  std::optional<std::string> mended = {};
  std::string_view code = code::notANumber;
};

/// What is known of a number that is looked at.
struct NumberWords {
  std::string subject;  ///< such as "'CFL'" or "item 2 of 'index'"
  std::string wanted;   ///< what to write, such as "a number in m"
  std::string unit;
  bool isInteger = false;
};

std::string replaced(std::string_view text, std::string_view old, std::string_view fresh) {
  std::string result(text);
  replaceAll(result, old, fresh);
  return result;
}

bool isNumber(std::string_view text, bool isInteger_) {
  return isInteger_ ? isInteger(text) : isReal(text);
}

class NumberDoctor {
 public:
  explicit NumberDoctor(const NumberWords& words) : words_(&words) {}

  /// What is wrong with `text`, which is no number of its kind.
  [[nodiscard]] NumberSlip examine(std::string_view text) const {
    NumberSlip slip = first(text);
    for (int i = 0; i < 3 && slip.mended && !isNumber(*slip.mended, words_->isInteger); ++i) {
      NumberSlip next = first(*slip.mended);
      slip.mended = std::move(next.mended);
      slip.help = std::move(next.help);
    }
    if (slip.mended && !isNumber(*slip.mended, words_->isInteger)) {
      slip.mended.reset();
    }
    return slip;
  }

 private:
  [[nodiscard]] NumberSlip first(std::string_view text) const {
    for (const auto look :
         {&NumberDoctor::quotes, &NumberDoctor::signs, &NumberDoctor::template_,
          &NumberDoctor::comma, &NumberDoctor::letters, &NumberDoctor::clock,
          &NumberDoctor::exponent, &NumberDoctor::point, &NumberDoctor::parentheses,
          &NumberDoctor::unit, &NumberDoctor::several, &NumberDoctor::range,
          &NumberDoctor::expression, &NumberDoctor::whole}) {
      if (std::optional<NumberSlip> slip = (this->*look)(text)) {
        return *slip;
      }
    }
    return {all(text),
            fmt::format("{} is {}, which is no number", words_->subject, quotedText(text)),
            "write " + words_->wanted, std::nullopt, kindCode()};
  }

  static Span all(std::string_view text) { return {0, text.size()}; }

  [[nodiscard]] std::string_view kindCode() const {
    return words_->isInteger ? code::notAnInteger : code::notANumber;
  }

  [[nodiscard]] NumberSlip slip(std::string_view text, std::string message,
                                std::string mended) const {
    std::string help = fmt::format("write {}", mended);
    return {all(text), std::move(message), std::move(help), std::move(mended), kindCode()};
  }

  [[nodiscard]] std::optional<NumberSlip> quotes(std::string_view text) const {
    constexpr std::array<std::string_view, 6> marks{"\"", "'", "`", "\u201c", "\u201d", "\u201e"};
    std::string bare(text);
    for (const std::string_view mark : marks) {
      replaceAll(bare, mark, "");
    }
    if (bare.size() == text.size()) {
      return std::nullopt;
    }
    return slip(text,
                fmt::format("{} is given in quotes, which a number must not have", words_->subject),
                std::string(trimmed(bare)));
  }

  /// Signs that look like others.
  [[nodiscard]] std::optional<NumberSlip> signs(std::string_view text) const {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 4> looks{
        {{"\u2212", "-"}, {"\u2013", "-"}, {"\u2011", "-"}, {"\u00a0", " "}}};
    std::string plain(text);
    for (const auto& [sign, right] : looks) {
      replaceAll(plain, sign, right);
    }
    if (plain == text) {
      return std::nullopt;
    }
    return slip(
        text,
        fmt::format("{} holds a sign that only looks like a minus or a blank", words_->subject),
        std::string(trimmed(plain)));
  }

  [[nodiscard]] std::optional<NumberSlip> template_(std::string_view text) const {
    if (text.find('?') == std::string_view::npos) {
      return std::nullopt;
    }
    return NumberSlip{
        all(text),
        fmt::format("a '?' from a template still stands in place of {}", words_->subject),
        "write " + words_->wanted + " in place of the '?'", std::nullopt, kindCode()};
  }

  [[nodiscard]] std::optional<NumberSlip> comma(std::string_view text) const {
    const std::size_t place = text.find(',');
    if (place == std::string_view::npos) {
      return std::nullopt;
    }
    std::string sentence = fmt::format("{} is {}, but a decimal mark is a point and not a comma",
                                       words_->subject, quotedText(text));
    const bool isOnly = text.find(',', place + 1) == std::string_view::npos;
    const std::string_view before = text.substr(0, place);
    const std::string_view behind = text.substr(place + 1);
    const bool hasDigits = !before.empty() && isDigit(before.back());
    if (isOnly && behind.empty() && hasDigits) {
      return slip(text, fmt::format("a comma stands behind {}", words_->subject),
                  std::string(before));
    }
    const bool isDecimal = isOnly && !behind.empty() && isDigit(behind.front()) &&
                           behind.find('.') == std::string_view::npos;
    if (!isDecimal) {
      const std::string bare = replaced(text, ",", "");
      return NumberSlip{all(text),
                        fmt::format("{} is {}, but a number is written without commas",
                                    words_->subject, quotedText(text)),
                        isReal(bare) ? fmt::format("write {}", bare) : "write " + words_->wanted,
                        isReal(bare) && !isOnly && text.find('.') != std::string_view::npos
                            ? std::optional(bare)
                            : std::nullopt,
                        kindCode()};
    }
    std::string mended = replaced(text, ",", ".");
    // Three digits may be thousands.
    constexpr std::size_t group = 3;
    const std::string_view number = before.substr(before.starts_with('-') ? 1 : 0);
    if (behind.size() == group && isReal(behind) && number.find_first_not_of('0') == 0 &&
        number.size() <= group) {
      return NumberSlip{all(text), std::move(sentence),
                        fmt::format("write {} if the comma is a decimal mark, {} if it separates "
                                    "thousands",
                                    mended, replaced(text, ",", "")),
                        std::nullopt, kindCode()};
    }
    return slip(text, std::move(sentence), std::move(mended));
  }

  /// A letter that looks like a zero.
  [[nodiscard]] std::optional<NumberSlip> letters(std::string_view text) const {
    std::string plain(text);
    std::replace_if(
        plain.begin(), plain.end(), [](char c) { return c == 'O' || c == 'o'; }, '0');
    if (plain == text || !isNumber(plain, words_->isInteger) ||
        text.find_first_of(digits) == std::string_view::npos) {
      return std::nullopt;
    }
    return slip(text,
                fmt::format("{} is {}, which has the letter O in place of a zero", words_->subject,
                            quotedText(text)),
                std::move(plain));
  }

  /// Hours, minutes and seconds in place of seconds.
  [[nodiscard]] std::optional<NumberSlip> clock(std::string_view text) const {
    constexpr std::size_t all = 3;
    constexpr double sixty = 60;
    const std::vector<std::string> pieces = split(":", text);
    if (words_->unit != "s" || pieces.size() != all ||
        !std::all_of(pieces.begin(), pieces.end(), isInteger)) {
      return std::nullopt;
    }
    double seconds = 0;
    for (const std::string& piece : pieces) {
      seconds = sixty * seconds + stringToDouble(piece);
    }
    return slip(
        text,
        fmt::format("{} is {}, but a time is given in seconds", words_->subject, quotedText(text)),
        fmt::format("{}", seconds));
  }

  /// An exponent that is written with D.
  [[nodiscard]] std::optional<NumberSlip> exponent(std::string_view text) const {
    const std::size_t place = text.find_first_of("dD");
    if (place == 0 || place == std::string_view::npos) {
      return std::nullopt;
    }
    std::string mended(text);
    mended[place] = 'e';
    if (numberLength(mended) != mended.size()) {
      return std::nullopt;
    }
    return slip(text,
                fmt::format("{} is {}, but an exponent is written with 'e'", words_->subject,
                            quotedText(text)),
                std::move(mended));
  }

  /// A number without a digit before its point, or an integer with a plus.
  [[nodiscard]] std::optional<NumberSlip> point(std::string_view text) const {
    if (numberLength(text) != text.size()) {
      return std::nullopt;
    }
    std::string mended(text);
    const std::size_t place = mended.find('.');
    const bool lacksDigit =
        place != std::string::npos && (place == 0 || !isDigit(mended[place - 1]));
    if (!words_->isInteger && lacksDigit) {
      mended.insert(place, "0");
      return slip(text,
                  fmt::format("{} is {}, which has no digit in front of its point", words_->subject,
                              quotedText(text)),
                  std::move(mended));
    }
    if (words_->isInteger && text.starts_with('+')) {
      return slip(text,
                  fmt::format("{} is {}, but an integer is written without a plus sign",
                              words_->subject, quotedText(text)),
                  mended.substr(1));
    }
    return std::nullopt;
  }

  [[nodiscard]] std::optional<NumberSlip> parentheses(std::string_view text) const {
    constexpr std::string_view opening = "([{";
    constexpr std::string_view closing = ")]}";
    if (text.empty() || opening.find(text.front()) == std::string_view::npos) {
      return std::nullopt;
    }
    const bool isClosed = closing.find(text.back()) != std::string_view::npos;
    const std::string_view inner =
        trimmed(text.substr(1, text.size() - 1 - (isClosed && text.size() > 1 ? 1 : 0)));
    const bool isSingle = inner.find_first_of(" \t\n") == std::string_view::npos && !inner.empty();
    return NumberSlip{all(text),
                      fmt::format("{} is a list, but must be one number", words_->subject),
                      isSingle ? fmt::format("write {}", inner) : "write " + words_->wanted,
                      isSingle ? std::optional(std::string(inner)) : std::nullopt, kindCode()};
  }

  [[nodiscard]] std::optional<NumberSlip> unit(std::string_view text) const {
    const std::size_t length = numberLength(text);
    if (length == 0 || length == text.size()) {
      return std::nullopt;
    }
    const std::string_view rest = trimmed(text.substr(length));
    const bool startsLikeUnit =
        std::string_view("%[(").find(rest.front()) != std::string_view::npos ||
        (rest.front() >= 'A' && rest.front() <= 'Z') ||
        (rest.front() >= 'a' && rest.front() <= 'z') ||
        static_cast<unsigned char>(rest.front()) > 127;
    if (!startsLikeUnit ||
        (rest.find_first_of(" \t=") != std::string_view::npos && !isSameUnit(rest))) {
      return std::nullopt;
    }
    const std::string number(text.substr(0, length));
    const auto place = static_cast<std::size_t>(rest.data() - text.data());
    NumberSlip slip{{place, text.size()},
                    fmt::format("{} stands behind the number of {}, which is given without a unit",
                                quotedText(rest), words_->subject),
                    {},
                    std::nullopt,
                    kindCode()};
    if (words_->unit.empty()) {
      slip.help = fmt::format("write only a number: {} has no unit", words_->subject);
    } else if (isSameUnit(rest)) {
      slip.help =
          fmt::format("write {}: {} is in {} already", number, words_->subject, words_->unit);
      slip.mended = number;
    } else if (const double factor = factorOf(rest, words_->unit); factor > 0) {
      slip.mended = fmt::format("{:.12g}", stringToDouble(number) * factor);
      slip.help =
          fmt::format("write {}, which is {} {} in {}", *slip.mended, number, rest, words_->unit);
    } else {
      slip.help = fmt::format("write the number alone, converted to {}, the unit of {}",
                              words_->unit, words_->subject);
    }
    return slip;
  }

  [[nodiscard]] bool isSameUnit(std::string_view written) const {
    return plainUnit(written) == plainUnit(words_->unit) && written != "m/s-1";
  }

  [[nodiscard]] std::optional<NumberSlip> several(std::string_view text) const {
    const std::vector<std::string> pieces = split(" \t\n", text);
    const bool areNumbers =
        pieces.size() > 1 && std::all_of(pieces.begin(), pieces.end(),
                                         [](const std::string& piece) { return isReal(piece); });
    if (!areNumbers) {
      return std::nullopt;
    }
    return NumberSlip{
        all(text),
        fmt::format("{} is {}, but must be one number", words_->subject, quotedText(text)),
        "write " + words_->wanted + ", without blanks within it", std::nullopt, kindCode()};
  }

  /// Two whole numbers that stand for all between them.
  [[nodiscard]] std::optional<NumberSlip> range(std::string_view text) const {
    const std::size_t length = words_->isInteger ? numberLength(text) : 0;
    if (length == 0 || length == text.size()) {
      return std::nullopt;
    }
    const std::string_view sign =
        text.substr(length, text.find_first_not_of("-:. ", length) - length);
    const std::string_view behind = text.substr(std::min(length + sign.size(), text.size()));
    if (sign.empty() || !isInteger(text.substr(0, length)) || !isInteger(behind)) {
      return std::nullopt;
    }
    return NumberSlip{
        all(text),
        fmt::format("{} is {}, but ranges are not known here", words_->subject, quotedText(text)),
        fmt::format("list each whole number from {} to {}, separated by blanks",
                    text.substr(0, length), behind),
        std::nullopt, kindCode()};
  }

  [[nodiscard]] std::optional<NumberSlip> expression(std::string_view text) const {
    const std::size_t length = numberLength(text);
    if (length == 0 || text.find_first_of("+-*/^") == std::string_view::npos ||
        text.find_first_not_of("0123456789.+-*/^eE() ") != std::string_view::npos) {
      return std::nullopt;
    }
    return NumberSlip{all(text),
                      fmt::format("{} is {}, but nothing is calculated in a command file",
                                  words_->subject, quotedText(text)),
                      fmt::format("write the result as {}", words_->wanted), std::nullopt,
                      kindCode()};
  }

  /// A real number in place of an integer.
  [[nodiscard]] std::optional<NumberSlip> whole(std::string_view text) const {
    if (!words_->isInteger || !isReal(text)) {
      return std::nullopt;
    }
    const double value = stringToDouble(text);
    constexpr double largest = 2147483647.0;
    NumberSlip slip{
        all(text),
        fmt::format("{} is {}, but must be a whole number", words_->subject, quotedText(text)),
        "write " + words_->wanted, std::nullopt, code::notAnInteger};
    if (value >= -largest && value <= largest &&
        static_cast<double>(static_cast<int>(value)) == value) {
      slip.mended = std::to_string(static_cast<int>(value));
      slip.help = fmt::format("write {}", *slip.mended);
    }
    return slip;
  }

  const NumberWords* words_;
};

class ValueDoctor {
 public:
  explicit ValueDoctor(const RefusedValue& refused)
      : refused_(&refused),
        name_(refused.tag.getName()),
        prototype_(refused.tag.getLogicalMaster() == nullptr ? &refused.tag
                                                             : refused.tag.getLogicalMaster()),
        traits_(traitsOf(*prototype_)),
        allowed_(allowedValuesOf(*prototype_)),
        unit_(unitOf(*prototype_)) {
    const std::string_view written = refused.value.in(refused.text);
    std::vector<char> blanked(written.begin(), written.end());
    blankComments(blanked);
    value_.assign(blanked.begin(), blanked.end());
  }

  [[nodiscard]] Diagnostic explain() const {
    if (refused_->refusal.ends_with("are exclusive.")) {
      return explainExclusion();
    }
    if (value_.empty()) {
      Diagnostic diagnostic;
      diagnostic.code = code::missingValue;
      diagnostic.at.at = refused_->name;
      diagnostic.message = fmt::format("{} has no value", subject());
      diagnostic.help = fmt::format("write {} behind the equals sign", wanted());
      return diagnostic;
    }
    const Slip slip = find();
    Diagnostic diagnostic;
    diagnostic.code = slip.code.empty() ? kindCode() : slip.code;
    diagnostic.at.at = {refused_->value.begin + slip.at.begin, refused_->value.begin + slip.at.end};
    diagnostic.message = slip.message;
    diagnostic.help = slip.help;
    if (!slip.changes.empty()) {
      addFix(slip, diagnostic);
    }
    return diagnostic;
  }

  /// What is to be written.
  [[nodiscard]] std::string wanted() const {
    if (isChoice()) {
      return (allowed_.size() == 1 ? "" : "one of ") + choicesText(allowed_);
    }
    switch (traits_.kind) {
      case ValueKind::integer:
        return numberWanted("a whole number");
      case ValueKind::real:
        return numberWanted("a number");
      case ValueKind::file:
        return "the name of a file";
      case ValueKind::seriesFile:
        return "the name of a file with a time series";
      case ValueKind::position:
        return "the name of the region, a dot and the name of the place, as 'region.place'";
      case ValueKind::integers:
        return listWanted("whole numbers", "( 1 2 3 )");
      case ValueKind::reals:
        return listWanted("numbers", "( 0.5 1.0 )");
      case ValueKind::words:
      case ValueKind::outputValues:
        return listWanted("words", traits_.entries.empty()
                                       ? "( one two )"
                                       : fmt::format("( {} )", traits_.entries.front()));
      case ValueKind::namedReals:
        return "a name, a colon and a list of numbers, as 'name:( 0.5 1.0 )'";
      case ValueKind::text:
        return traits_.pattern.empty() ? "a text" : "one word of letters, digits, '_' and '-'";
    }
    return {};
  }

 private:
  [[nodiscard]] std::string subject() const { return quotedText(name_); }

  [[nodiscard]] bool isList() const {
    switch (traits_.kind) {
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

  [[nodiscard]] bool isFile() const {
    return traits_.kind == ValueKind::file || traits_.kind == ValueKind::seriesFile;
  }

  [[nodiscard]] bool isNumber() const {
    return traits_.kind == ValueKind::integer || traits_.kind == ValueKind::real;
  }

  [[nodiscard]] bool isChoice() const { return !allowed_.empty() && traits_.entries.empty(); }

  [[nodiscard]] std::string_view kindCode() const {
    if (isChoice()) {
      return code::notAChoice;
    }
    switch (traits_.kind) {
      case ValueKind::integer:
        return code::notAnInteger;
      case ValueKind::real:
        return code::notANumber;
      case ValueKind::file:
      case ValueKind::seriesFile:
        return code::missingFile;
      case ValueKind::position:
        return code::notAPosition;
      case ValueKind::text:
        return code::notAWord;
      default:
        return code::notAList;
    }
  }

  [[nodiscard]] std::string numberWanted(std::string_view kind) const {
    std::string text(kind);
    if (!unit_.empty()) {
      text += " in " + unit_;
    }
    const std::string range = rangeOf(traits_.range, name_);
    return range.empty() ? text : text + " with " + range;
  }

  [[nodiscard]] std::string listWanted(std::string_view items, std::string_view form) const {
    std::string count;
    if (traits_.itemCount != 0) {
      count =
          fmt::format("{}{} ", traits_.itemCount < 0 ? "up to " : "", std::abs(traits_.itemCount));
    }
    std::string text = fmt::format("a list of {}{} in parentheses, as {}", count, items, form);
    if (!unit_.empty()) {
      text += " in " + unit_;
    }
    return text;
  }

  [[nodiscard]] Diagnostic explainExclusion() const {
    std::string_view other;
    for (const TagRule& rule : traits_.rules) {
      if (rule.kind == TagRule::Kind::exclusive) {
        other = rule.other;
      }
    }
    Diagnostic diagnostic;
    diagnostic.code = code::exclusiveTags;
    diagnostic.at.at = refused_->name;
    diagnostic.message =
        fmt::format("{} and {} cannot be given together", subject(), quotedText(other));
    diagnostic.help = fmt::format("remove {} or {}", subject(), quotedText(other));
    return diagnostic;
  }

  /// Whether the converter takes `candidate` as the value of the tag.
  [[nodiscard]] bool accepts(const std::string& candidate) const {
    return acceptedBy(*prototype_, candidate);
  }

  [[nodiscard]] bool acceptedBy(const InputTag& prototype, const std::string& candidate) const {
    const InputBlock& block = refused_->block;
    const InputBlock& master =
        block.getLogicalMaster() == nullptr ? block : *block.getLogicalMaster();
    if (traitsOf(prototype).kind == ValueKind::seriesFile) {
      return canOpen(resolvePath(candidate));
    }
    try {
      const std::unique_ptr<InputBlock> scratch = master.logicalClone(nullptr);
      const std::unique_ptr<InputTag> tag = prototype.logicalClone(*scratch);
      tag->setRawValue(candidate);
      return true;
    } catch (const InputParseError&) {
      return false;
    } catch (const Stopped&) {
      return false;
    }
  }

  [[nodiscard]] static std::string changed(std::string text, std::vector<Change> changes) {
    std::stable_sort(changes.begin(), changes.end(),
                     [](const Change& a, const Change& b) { return a.at.begin > b.at.begin; });
    for (const Change& change : changes) {
      text.replace(change.at.begin, change.at.size(), change.text);
    }
    return text;
  }

  void addFix(const Slip& slip, Diagnostic& diagnostic) const {
    std::string mended = changed(value_, slip.changes);
    // What begins a comment or another line is no longer part of the value.
    mended.resize(std::min({mended.size(), mended.find("//"), behindFirstTag(slip, mended)}));
    if (!accepts(std::string(trimmed(mended)))) {
      return;
    }
    Fix fix;
    fix.message = slip.fix.empty() ? "write " + quotedText(trimmed(mended)) : slip.fix;
    for (const Change& change : slip.changes) {
      const Span at{refused_->value.begin + change.at.begin, refused_->value.begin + change.at.end};
      if (at.in(refused_->text) != change.at.in(value_)) {
        return;
      }
      fix.edits.push_back({at, change.text});
    }
    diagnostic.fixes.push_back(std::move(fix));
  }

  [[nodiscard]] static std::size_t behindFirstTag(const Slip& slip, const std::string& mended) {
    return slip.code == code::twoTagsOnALine || slip.code == code::strayClosingBrace
               ? mended.find('\n')
               : std::string::npos;
  }

  [[nodiscard]] Span whole() const { return {0, value_.size()}; }

  [[nodiscard]] Slip find() const {
    for (const auto look :
         {&ValueDoctor::leadingSign, &ValueDoctor::secondTag, &ValueDoctor::closingBrace,
          &ValueDoctor::commentSign, &ValueDoctor::question}) {
      if (std::optional<Slip> slip = (this->*look)()) {
        return *slip;
      }
    }
    if (isChoice()) {
      return choice();
    }
    switch (traits_.kind) {
      case ValueKind::integer:
      case ValueKind::real:
        return number();
      case ValueKind::file:
      case ValueKind::seriesFile:
        return file();
      case ValueKind::position:
        return position();
      case ValueKind::text:
        return word();
      default:
        return list();
    }
  }

  /// A second equals sign or a colon in front of the value.
  [[nodiscard]] std::optional<Slip> leadingSign() const {
    const std::size_t end = value_.find_first_not_of("=:> \t");
    if (end == 0 || end == std::string::npos) {
      return std::nullopt;
    }
    const std::string_view sign = trimmed(std::string_view(value_).substr(0, end));
    return Slip{{0, sign.size()},
                fmt::format("{} stands between the equals sign and the value of {}",
                            quotedText(sign), subject()),
                fmt::format("write '{} = {}'", name_, value_.substr(end)),
                {{{0, end}, ""}},
                fmt::format("remove {}", quotedText(sign))};
  }

  /// Another tag on the same line.
  [[nodiscard]] std::optional<Slip> secondTag() const {
    const std::size_t equals = value_.find('=');
    if (equals == std::string::npos) {
      return std::nullopt;
    }
    std::size_t end = equals;
    while (end > 0 && isWhiteSpace(value_[end - 1])) {
      --end;
    }
    std::size_t begin = end;
    while (begin > 0 && isNameCharacter(value_[begin - 1])) {
      --begin;
    }
    const std::string other = value_.substr(begin, end - begin);
    if (other.empty()) {
      return std::nullopt;
    }
    const std::string_view before = trimmed(std::string_view(value_).substr(0, begin));
    const bool isNamed = traits_.kind == ValueKind::namedReals;
    if (before.empty() && isNamed &&
        trimmed(std::string_view(value_).substr(equals + 1)).starts_with('(')) {
      return std::nullopt;  // it stands in place of a colon
    }
    if (before.empty()) {
      return Slip{
          {begin, end},
          fmt::format("{} stands in place of the value of {}", quotedText(value_.substr(begin)),
                      subject()),
          fmt::format("write {}, and put {} on a line of its own", wanted(), quotedText(other)),
          {},
          {},
          code::twoTagsOnALine};
    }
    std::size_t gap = begin;
    while (gap > 0 &&
           (isWhiteSpace(value_[gap - 1]) || value_[gap - 1] == ',' || value_[gap - 1] == ';')) {
      --gap;
    }
    Slip slip{{begin, end},
              fmt::format("{} stands on the line of {} and counts as part of its value",
                          quotedText(other), subject()),
              fmt::format("put {} on a line of its own", quotedText(value_.substr(begin))),
              {},
              fmt::format("put {} on a line of its own", quotedText(other)),
              code::twoTagsOnALine};
    const int position = refused_->block.getLogicalTagPosition(other);
    if (position >= 0 && gap > 0) {
      slip.changes.push_back({{gap, begin}, "\n" + indentation()});
    }
    return slip;
  }

  [[nodiscard]] std::string indentation() const {
    return std::string(indentationAt(refused_->text, refused_->name.begin));
  }

  /// A brace that ends the block on the line of its last tag.
  [[nodiscard]] std::optional<Slip> closingBrace() const {
    if (!value_.ends_with('}') || value_.find('{') != std::string::npos) {
      return std::nullopt;
    }
    std::size_t begin = value_.size();
    while (begin > 0 && (value_[begin - 1] == '}' || isWhiteSpace(value_[begin - 1]))) {
      --begin;
    }
    const std::size_t brace = value_.find('}', begin);
    Slip slip{{brace, value_.size()},
              fmt::format("the '}}' on the line of {} counts as part of its value and closes "
                          "nothing",
                          subject()),
              "put the '}' on a line of its own",
              {},
              "put the '}' on a line of its own",
              code::strayClosingBrace};
    if (begin > 0) {
      slip.changes.push_back({{begin, brace}, "\n" + indentation()});
    }
    return slip;
  }

  /// What begins a comment in other languages, or ends a line.
  [[nodiscard]] std::optional<Slip> commentSign() const {
    // Behind a list, a sign within it means something else.
    const std::size_t from = isList() ? value_.rfind(')') : 0;
    if (from == std::string::npos) {
      return std::nullopt;
    }
    constexpr std::array<std::string_view, 6> signs{"#", ";", "!", "--", "%", "/"};
    std::size_t place = std::string::npos;
    std::string_view found;
    for (const std::string_view sign : signs) {
      std::size_t at = value_.find(sign, from);
      const bool needsBlank = isFile() || sign == "%" || sign == "--" || sign == "/";
      while (at != std::string::npos && needsBlank && (at == 0 || !isWhiteSpace(value_[at - 1]))) {
        at = value_.find(sign, at + 1);
      }
      const bool isUnit = sign == "%" && at != std::string::npos && at + 1 == value_.size();
      // A slash may be meant to divide, and stands in names of files.
      constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
      const bool isOther =
          sign == "/" && at != std::string::npos &&
          (isFile() || toUpper(value_).find_first_of(letters, at) == std::string::npos);
      if (at < place && !isUnit && !isOther) {
        place = at;
        found = sign;
      }
    }
    if (place == std::string::npos) {
      return std::nullopt;
    }
    const std::string_view rest = trimmed(std::string_view(value_).substr(place + found.size()));
    if (rest.empty()) {
      std::size_t begin = place;
      while (begin > 0 && isWhiteSpace(value_[begin - 1])) {
        --begin;
      }
      return Slip{{place, value_.size()},
                  fmt::format("{} stands behind the value of {}", quotedText(found), subject()),
                  fmt::format("remove {}: a line ends without a sign", quotedText(found)),
                  {{{begin, value_.size()}, ""}},
                  fmt::format("remove {}", quotedText(found))};
    }
    if (place == 0) {
      return Slip{
          whole(),
          fmt::format("{} has no value, since {} is no part of one", subject(), quotedText(value_)),
          fmt::format("write {}, and begin a comment with '//'", wanted()),
          {},
          {},
          code::missingValue};
    }
    return Slip{{place, value_.size()},
                fmt::format("{} does not begin a comment, so it counts as part of the value of {}",
                            quotedText(found), subject()),
                "begin the comment with '//'",
                {{{place, place + found.size()}, isWhiteSpace(value_[place - 1]) ? "//" : " //"}},
                "begin the comment with '//'"};
  }

  /// What a template leaves open.
  [[nodiscard]] std::optional<Slip> question() const {
    const std::size_t place = value_.find('?');
    if (place == std::string::npos) {
      return std::nullopt;
    }
    return Slip{
        whole(),
        fmt::format("a '?' from a template still stands in place of the value of {}", subject()),
        fmt::format("write {} in place of the '?'", wanted())};
  }

  /// The value within quotes of any kind; empty when it has none.
  [[nodiscard]] std::string unquoted() const {
    constexpr std::array<std::string_view, 8> marks{"\"",     "'",      "`",      "\u201c",
                                                    "\u201d", "\u201e", "\u2018", "\u2019"};
    std::string_view bare = value_;
    for (const std::string_view mark : marks) {
      if (bare.starts_with(mark) && bare.size() > mark.size()) {
        bare.remove_prefix(mark.size());
        break;
      }
    }
    for (const std::string_view mark : marks) {
      if (bare.ends_with(mark)) {
        bare.remove_suffix(mark.size());
        break;
      }
    }
    return bare.size() == value_.size() ? std::string() : std::string(trimmed(bare));
  }

  [[nodiscard]] Slip quotes(const std::string& bare) const {
    return {whole(),
            fmt::format("the value of {} stands in quotes, which count as part of it", subject()),
            fmt::format("write {} without quotes", bare),
            {{whole(), bare}}};
  }

  [[nodiscard]] Slip choice() const {
    std::string bare = unquoted();
    if (!bare.empty() && accepts(bare)) {
      return quotes(bare);
    }
    if (value_.ends_with(',') || value_.ends_with('.')) {
      bare = trimmed(std::string_view(value_).substr(0, value_.size() - 1));
      if (accepts(bare)) {
        return {{value_.size() - 1, value_.size()},
                fmt::format("{} stands behind the value of {}",
                            quotedText(value_.substr(value_.size() - 1)), subject()),
                fmt::format("write {}", quotedText(bare)),
                {{whole(), bare}}};
      }
    }
    const std::string answer = sameAnswer(value_, allowed_);
    if (!answer.empty()) {
      return {whole(),
              fmt::format("{} is answered with {}, and not with {}", subject(),
                          choicesText(allowed_), quotedText(value_)),
              fmt::format("write {}", quotedText(answer)),
              {{whole(), answer}}};
    }
    return notAmong(whole(), value_, allowed_, subject());
  }

  /// A word that is none of a few.
  [[nodiscard]] Slip notAmong(Span at, std::string_view written,
                              const std::vector<std::string>& known, const std::string& of) const {
    const Likely likely = likelyWord(written, known);
    Slip slip{at, fmt::format("{} is none of the choices of {}", quotedText(written), of),
              {}, {},
              {}, code::notAChoice};
    if (likely.word.empty()) {
      slip.help = (known.size() == 1 ? "write " : "write one of ") + choicesText(known);
    } else {
      slip.help = fmt::format("write {}", quotedText(likely.word));
      if (known.size() > 1) {
        slip.help += ", or another of the choices " + choicesText(known);
      }
    }
    if (likely.isCertain) {
      slip.changes.push_back({at, likely.word});
      slip.fix = fmt::format("write {}", quotedText(likely.word));
    }
    return slip;
  }

  [[nodiscard]] NumberWords numberWords(bool isInteger_, std::string of, std::string what) const {
    return {std::move(of), std::move(what), unit_, isInteger_};
  }

  [[nodiscard]] Slip number() const {
    const bool isInteger_ = traits_.kind == ValueKind::integer;
    if (!KESTparse::isNumber(value_, isInteger_)) {
      const NumberWords words = numberWords(isInteger_, subject(), wanted());
      NumberSlip found = NumberDoctor(words).examine(value_);
      Slip slip{found.at, std::move(found.message), std::move(found.help), {}, {}, found.code};
      if (found.mended) {
        slip.changes.push_back({whole(), *found.mended});
      }
      return slip;
    }
    const double given = stringToDouble(value_);
    const Range<double>& range = traits_.range;
    std::string bound;
    if (range.hasLower && given <= range.lower) {
      bound = fmt::format("{} {}", range.lowerInclusive ? "at least" : "greater than",
                          doubleToString(range.lower));
    } else if (range.hasUpper && given >= range.upper) {
      bound = fmt::format("{} {}", range.upperInclusive ? "at most" : "less than",
                          doubleToString(range.upper));
    } else {
      return {whole(), fmt::format("{} cannot be {}", subject(), quotedText(value_)),
              "write " + wanted()};
    }
    Slip slip{whole(),
              fmt::format("{} is {}, but must be {}{}", subject(), value_, bound,
                          unit_.empty() || unit_.ends_with(')') ? "" : " " + unit_),
              "write " + wanted(),
              {},
              {},
              code::outOfRange};
    constexpr double percent = 100.0;
    if (range.hasUpper && range.upper == 1.0 && given > 1.0 && given <= percent &&
        (!range.hasLower || given / percent >= range.lower)) {
      slip.help += fmt::format("; {} % is {}", value_, doubleToString(given / percent));
    }
    return slip;
  }

  [[nodiscard]] Slip word() const {
    const std::string bare = unquoted();
    if (!bare.empty() && accepts(bare)) {
      return quotes(bare);
    }
    const auto isBad = [](char c) { return !isNameCharacter(c); };
    const auto first = std::find_if(value_.begin(), value_.end(), isBad);
    const auto place = static_cast<std::size_t>(first - value_.begin());
    if (place == value_.size()) {
      return {whole(), fmt::format("{} cannot be {}", subject(), quotedText(value_)),
              "write " + wanted()};
    }
    const std::string joined = joinedWords();
    if (isWhiteSpace(*first)) {
      // By a name that others use they would not find it.
      std::vector<Change> changes;
      if (!name_.ends_with("name")) {
        changes.push_back({whole(), joined});
      }
      return {whole(),
              fmt::format("{} is {}, but must be one word without blanks", subject(),
                          quotedText(value_)),
              accepts(joined) ? fmt::format("write {}", quotedText(joined)) : "write " + wanted(),
              std::move(changes)};
    }
    std::size_t end = place + 1;
    while (end < value_.size() && (static_cast<unsigned char>(value_[end]) & 0xc0) == 0x80) {
      ++end;
    }
    return {{place, end},
            fmt::format("{} is {}, which holds a {}", subject(), quotedText(value_),
                        quotedText(value_.substr(place, end - place))),
            "write " + wanted()};
  }

  [[nodiscard]] std::string joinedWords() const {
    std::string joined;
    for (const std::string& piece : split(" \t", value_)) {
      joined += (joined.empty() ? "" : "_") + piece;
    }
    return joined;
  }

  [[nodiscard]] Slip position() const {
    const std::string bare = unquoted();
    if (!bare.empty() && accepts(bare)) {
      return quotes(bare);
    }
    const std::size_t dot = value_.find('.');
    const std::string help = "write " + wanted();
    if (dot == 0) {
      return {{0, 1}, fmt::format("{} names no region in front of its dot", subject()), help};
    }
    if (dot != std::string::npos) {
      const std::size_t second = value_.find('.', dot + 1);
      return {{second, second + 1},
              fmt::format("{} is {}, which has more than one dot", subject(), quotedText(value_)),
              help};
    }
    Slip slip{whole(),
              fmt::format("{} is {}, which names no region", subject(), quotedText(value_)),
              fmt::format("write the name of the region in front of it, as 'region.{}'", value_)};
    const std::size_t joint = value_.find_first_of(":/\\,; \t");
    if (joint != std::string::npos && joint > 0) {
      const std::size_t behind = value_.find_first_not_of(":/\\,; \t", joint);
      if (behind != std::string::npos &&
          value_.find_first_of(":/\\,; \t", behind) == std::string::npos) {
        const std::string mended = value_.substr(0, joint) + "." + value_.substr(behind);
        slip.message = fmt::format("{} is {}, but a dot stands between region and place", subject(),
                                   quotedText(value_));
        slip.help = fmt::format("write {}", quotedText(mended));
        slip.changes.push_back({whole(), mended});
      }
    }
    return slip;
  }

  [[nodiscard]] Slip file() const {
    const MissingFile missing = explainMissingFile(value_);
    Slip slip{whole(), missing.message, missing.help, {}, {}, missing.code};
    if (!missing.meant.empty()) {
      slip.changes.push_back({whole(), missing.meant});
    }
    return slip;
  }

  // Lists.

  struct ListItem {
    Span at;
    std::string_view text;
  };

  [[nodiscard]] std::vector<ListItem> itemsOf(Span inner) const {
    std::vector<ListItem> items;
    std::size_t at = inner.begin;
    while (at < inner.end) {
      while (at < inner.end && isWhiteSpace(value_[at])) {
        ++at;
      }
      const std::size_t begin = at;
      while (at < inner.end && !isWhiteSpace(value_[at])) {
        ++at;
      }
      if (at > begin) {
        items.push_back({{begin, at}, std::string_view(value_).substr(begin, at - begin)});
      }
    }
    return items;
  }

  [[nodiscard]] bool holdsNumbers() const {
    return traits_.kind == ValueKind::integers || traits_.kind == ValueKind::reals ||
           traits_.kind == ValueKind::namedReals;
  }

  [[nodiscard]] Slip list() const {
    std::size_t begin = 0;
    if (traits_.kind == ValueKind::namedReals) {
      if (std::optional<Slip> slip = listName(begin)) {
        return *slip;
      }
    }
    Span inner{begin, value_.size()};
    if (std::optional<Slip> slip = brackets(begin, inner)) {
      // What stands in the wrong brackets may be wrong as well.
      if (!accepts(std::string(trimmed(changed(value_, slip->changes))))) {
        if (std::optional<Slip> within = items(inner)) {
          slip->changes.insert(slip->changes.end(), within->changes.begin(), within->changes.end());
        }
      }
      const std::string mended(trimmed(changed(value_, slip->changes)));
      if (!slip->changes.empty() && accepts(mended)) {
        slip->help = fmt::format("write {}", mended);
      }
      return *slip;
    }
    if (std::optional<Slip> slip = items(inner)) {
      return *slip;
    }
    return {whole(), fmt::format("{} is {}, which is no list", subject(), quotedText(value_)),
            "write " + wanted()};
  }

  /// What is wrong with the name of a list; `begin` is moved behind it.
  [[nodiscard]] std::optional<Slip> listName(std::size_t& begin) const {
    const std::size_t end = value_.find_first_of("(:");
    const std::string help = "write " + wanted();
    if (end == 0 || end == std::string::npos || value_[end] == '(') {
      Slip slip{{0, end == std::string::npos ? value_.size() : end + 1},
                fmt::format("the list of {} has no name with a colon in front of it", subject()),
                help};
      std::string_view name = end == std::string::npos
                                  ? std::string_view()
                                  : trimmed(std::string_view(value_).substr(0, end));
      name = trimmed(name.substr(0, name.find('=')));
      if (isWritableName(name)) {
        slip.help = fmt::format("write a colon between {} and the list", quotedText(name));
        slip.fix = slip.help;
        slip.changes.push_back({{name.size(), end}, ":"});
      }
      return slip;
    }
    const std::string_view name = trimmed(std::string_view(value_).substr(0, end));
    if (refused_->refusal.ends_with("' is already defined")) {
      return Slip{{0, name.size()},
                  fmt::format("the list name {} is given twice", quotedText(name)),
                  fmt::format("give each list of {} a name of its own", subject()),
                  {},
                  {},
                  code::listNameTwice};
    }
    begin = end + 1;
    const std::size_t next = value_.find_first_not_of(" \t\n", begin);
    if (next == std::string::npos) {
      return Slip{{0, value_.size()},
                  fmt::format("the list {} of {} has no numbers", quotedText(name), subject()),
                  help,
                  {},
                  {},
                  code::missingValue};
    }
    if (next != begin) {
      Slip slip{{begin, next},
                fmt::format("a blank stands between the colon and the list of {}", subject()),
                fmt::format("write {}", quotedText(value_.substr(0, begin) + value_.substr(next))),
                {{{begin, next}, ""}},
                "remove the blank"};
      return slip;
    }
    return std::nullopt;
  }

  /// What is wrong with what stands around the items; `inner` becomes the place of these.
  // One paragraph for each way in which people write it.
  // NOLINTNEXTLINE(readability-function-cognitive-complexity)
  [[nodiscard]] std::optional<Slip> brackets(std::size_t begin, Span& inner) const {
    const std::string_view text = std::string_view(value_).substr(begin);
    const char front = text.front();
    const char back = text.back();
    const std::size_t end = value_.size();
    if (front == '[' || front == '{' || front == '<') {
      const bool isClosed = back == ']' || back == '}' || back == '>' || back == ')';
      inner = {begin + 1, isClosed ? end - 1 : end};
      return Slip{
          {begin, begin + 1},
          fmt::format("the list of {} stands in '{}' and not in parentheses", subject(), front),
          "put the list in parentheses: ( )",
          {{{begin, begin + 1}, "("}, {{inner.end, end}, ")"}},
          "put the list in parentheses"};
    }
    if (front != '(') {
      const std::size_t opening = text.find('(');
      if (opening != std::string_view::npos && traits_.kind != ValueKind::outputValues) {
        return Slip{{begin, begin + opening},
                    fmt::format("{} stands in front of the list of {}",
                                quotedText(trimmed(text.substr(0, opening))), subject()),
                    "write " + wanted()};
      }
      if (const std::string_view bare = withoutQuotes(text); bare != text) {
        return Slip{
            {begin, end},
            fmt::format("the list of {} stands in quotes and not in parentheses", subject()),
            fmt::format("write ({})", bare),
            {{{begin, begin + 1}, "("}, {{end - 1, end}, ")"}}};
      }
      const bool isClosed = back == ')' && opening == std::string_view::npos;
      inner = {begin, isClosed ? end - 1 : end};
      std::vector<Change> changes{{{begin, begin}, "("}};
      if (!isClosed) {
        changes.push_back({{end, end}, ")"});
      }
      return Slip{
          {begin, end},
          fmt::format("the list of {} stands without parentheses", subject()),
          fmt::format("write ({})", quotedText(text).substr(1, quotedText(text).size() - 2)),
          std::move(changes)};
    }
    const std::size_t closing = text.rfind(')');
    if (closing == std::string_view::npos) {
      const bool isWrong = back == ']' || back == '}';
      inner = {begin + 1, isWrong ? end - 1 : end};
      return Slip{{begin, begin + 1},
                  fmt::format("the list of {} is not closed", subject()),
                  "write ')' behind its last item",
                  {{{inner.end, end}, ")"}},
                  "write ')' behind the last item"};
    }
    inner = {begin + 1, begin + closing};
    if (closing + 1 < text.size()) {
      std::size_t behind = begin + closing + 1;
      while (isWhiteSpace(value_[behind])) {
        ++behind;
      }
      const std::string rest = value_.substr(behind);
      const bool isUnit = !unit_.empty() && plainUnit(rest) == plainUnit(unit_);
      Slip slip{
          {behind, end},
          fmt::format("{} stands behind the list of {}", quotedText(rest), subject()),
          isUnit ? fmt::format("remove {}: {} is in {} already", quotedText(rest), subject(), unit_)
                 : fmt::format("remove {}: nothing may follow the closing parenthesis",
                               quotedText(rest)),
          {},
          fmt::format("remove {}", quotedText(rest))};
      if (isUnit || rest == "," || rest == "." || rest == ":") {
        slip.changes.push_back({{begin + closing + 1, end}, ""});
      }
      return slip;
    }
    return std::nullopt;
  }

  [[nodiscard]] std::string itemSubject(std::size_t number) const {
    return fmt::format("item {} of {}", number, subject());
  }

  [[nodiscard]] std::optional<Slip> items(Span inner) const {
    if (std::optional<Slip> slip = parenthesesWithin(inner)) {
      return slip;
    }
    const std::vector<ListItem> found = itemsOf(inner);
    if (found.empty()) {
      return Slip{whole(),
                  fmt::format("the list of {} is empty", subject()),
                  "write " + wanted(),
                  {},
                  {},
                  code::missingValue};
    }
    if (std::optional<Slip> slip = commas(inner, found)) {
      return slip;
    }
    if (std::optional<Slip> slip = holdsNumbers() ? numbers(found) : words(found)) {
      return slip;
    }
    return itemCount(found);
  }

  [[nodiscard]] std::optional<Slip> parenthesesWithin(Span inner) const {
    const std::size_t place = value_.find_first_of("()", inner.begin);
    if (place >= inner.end) {
      return std::nullopt;
    }
    Slip slip{{place, place + 1},
              fmt::format("a parenthesis stands within the list of {}", subject()),
              "write " + wanted()};
    const std::size_t closing = value_.find(')', place);
    if (traits_.kind == ValueKind::outputValues && value_[place] == '(' && closing < inner.end) {
      slip.message =
          fmt::format("what is accumulated in {} is written in square brackets", subject());
      slip.help = fmt::format("write '{}[value]'", InputTagSpecialOutputValueList::accumulators[1]);
      for (std::size_t at = place; at < inner.end; at = value_.find_first_of("()", at + 1)) {
        slip.changes.push_back({{at, at + 1}, value_[at] == '(' ? "[" : "]"});
      }
      return slip;
    }
    const std::string_view text = trimmed(inner.in(value_));
    if (text.starts_with('(') && text.find_first_of("()", 1) == text.size() - 1) {
      slip.message = fmt::format("the list of {} stands in two pairs of parentheses", subject());
      slip.help = fmt::format("write {}", text);
      slip.changes = {{{inner.begin - 1, place}, ""}, {{closing + 1, inner.end + 1}, ""}};
    }
    return slip;
  }

  /// Commas or semicolons between items, or as decimal marks.
  // NOLINTNEXTLINE(readability-function-cognitive-complexity): likewise.
  [[nodiscard]] std::optional<Slip> commas(Span inner, const std::vector<ListItem>& found) const {
    const std::size_t first = value_.find_first_of(",;", inner.begin);
    if (first >= inner.end) {
      return std::nullopt;
    }
    std::vector<Change> separators;  // removed
    std::vector<Change> points;      // those within numbers become points, the others go
    bool mayBePoints = traits_.kind == ValueKind::reals || traits_.kind == ValueKind::namedReals;
    bool separates = false;
    std::size_t within = 0;
    for (const ListItem& item : found) {
      std::size_t inItem = 0;
      for (std::size_t i = 0; i < item.text.size(); ++i) {
        if (item.text[i] != ',' && item.text[i] != ';') {
          continue;
        }
        const Span at{item.at.begin + i, item.at.begin + i + 1};
        const bool isAtEnd = i == 0 || i + 1 == item.text.size();
        const bool isPoint = !isAtEnd && item.text[i] == ',' && isDigit(item.text[i - 1]) &&
                             isDigit(item.text[i + 1]);
        separates = separates || isAtEnd || item.text[i] == ';';
        separators.push_back({at, isAtEnd ? "" : " "});
        points.push_back({at, isPoint ? "." : isAtEnd ? "" : " "});
        inItem += isPoint ? 1 : 0;
        mayBePoints = mayBePoints && (isPoint || isAtEnd || item.text[i] == ';');
      }
      within += inItem;
      mayBePoints = mayBePoints && inItem <= 1;
    }
    mayBePoints = mayBePoints && within > 0;
    const bool takesSeparators = accepts(std::string(trimmed(changed(value_, separators))));
    const bool takesPoints = mayBePoints && accepts(std::string(trimmed(changed(value_, points))));
    Slip slip{
        {first, first + 1},
        fmt::format("{} separates the items of {}", quotedText(value_.substr(first, 1)), subject()),
        fmt::format("separate the items by blanks: {}", quotedText(changed(value_, separators)))};
    // "(1,5 2,5)" are two numbers, "(1,5)" may be one or two.
    if (takesPoints && (found.size() > 1 || !takesSeparators)) {
      if (!separates) {
        slip.message = fmt::format("a comma is used as decimal mark in {}", subject());
      }
      slip.help = fmt::format("write points for decimal marks, and blanks between items: {}",
                              quotedText(changed(value_, points)));
      slip.changes = std::move(points);
      slip.at = found.front().at;
      for (const ListItem& item : found) {
        if (item.text.find(',') != std::string_view::npos) {
          slip.at = item.at;
          break;
        }
      }
      slip.code = code::notANumber;
    } else if (takesPoints) {
      slip.message = fmt::format("a comma stands in the list of {}", subject());
      slip.help =
          fmt::format("write {} if it is a decimal mark, {} if it separates two numbers",
                      quotedText(changed(value_, points)), quotedText(changed(value_, separators)));
    } else {
      slip.changes = std::move(separators);
    }
    return slip;
  }

  [[nodiscard]] std::optional<Slip> numbers(const std::vector<ListItem>& found) const {
    const bool areIntegers = traits_.kind == ValueKind::integers;
    std::optional<Slip> slip;
    std::vector<Change> changes;
    bool isMended = true;
    for (std::size_t i = 0; i < found.size(); ++i) {
      const ListItem& item = found[i];
      if (KESTparse::isNumber(item.text, areIntegers)) {
        continue;
      }
      // A unit may stand behind a blank.
      const bool isUnit = i > 0 && !unit_.empty() && plainUnit(item.text) == plainUnit(unit_);
      const NumberWords words =
          numberWords(areIntegers, itemSubject(i + 1),
                      areIntegers ? "a whole number" : numberWanted("a number"));
      NumberSlip number = NumberDoctor(words).examine(item.text);
      if (isUnit) {
        number = {{0, item.text.size()},
                  fmt::format("{} stands in the list of {}, which holds only numbers",
                              quotedText(item.text), subject()),
                  fmt::format("write only the numbers: {} is in {} already", subject(), unit_),
                  "",
                  code::notANumber};
      }
      if (!slip) {
        slip = Slip{{item.at.begin + number.at.begin, item.at.begin + number.at.end},
                    number.message,
                    number.help,
                    {},
                    {},
                    number.code};
      }
      if (number.mended) {
        changes.push_back(
            {isUnit ? Span{found[i - 1].at.end, item.at.end} : item.at, *number.mended});
      } else {
        isMended = false;
      }
    }
    if (slip && isMended) {
      slip->changes = std::move(changes);
    }
    return slip;
  }

  [[nodiscard]] std::optional<Slip> words(const std::vector<ListItem>& found) const {
    if (traits_.entries.empty()) {
      return std::nullopt;
    }
    std::optional<Slip> slip;
    std::vector<Change> changes;
    bool isMended = true;
    for (const ListItem& item : found) {
      if (isEntry(item.text)) {
        continue;
      }
      Slip fault = entry(item);
      isMended = isMended && !fault.changes.empty();
      changes.insert(changes.end(), fault.changes.begin(), fault.changes.end());
      if (!slip) {
        slip = std::move(fault);
      }
    }
    if (slip) {
      slip->changes = isMended ? std::move(changes) : std::vector<Change>();
    }
    return slip;
  }

  [[nodiscard]] bool isKnown(std::string_view word) const {
    return std::find(traits_.entries.begin(), traits_.entries.end(), word) != traits_.entries.end();
  }

  [[nodiscard]] bool isAccumulator(std::string_view word) const {
    const auto& known = InputTagSpecialOutputValueList::accumulators;
    return std::find(known.begin(), known.end(), word) != known.end();
  }

  [[nodiscard]] bool isEntry(std::string_view item) const {
    if (traits_.kind != ValueKind::outputValues) {
      return isKnown(item);
    }
    const OutputItem parts = splitOutputItem(item);
    return parts.accumulator.empty() ? isKnown(item)
                                     : isAccumulator(parts.accumulator) && isKnown(parts.value);
  }

  /// A word that is none of the entries of a list.
  [[nodiscard]] Slip entry(const ListItem& item) const {
    std::string bare(item.text);
    std::erase_if(bare, [](char c) { return c == '"' || c == '\''; });
    if (bare.size() != item.text.size() && isEntry(bare)) {
      return {item.at,
              fmt::format("an item of {} stands in quotes, which count as part of it", subject()),
              fmt::format("write {} without quotes", bare),
              {{item.at, bare}}};
    }
    const std::string_view front = item.text.substr(0, item.text.find('['));
    if (traits_.kind == ValueKind::outputValues && isAccumulator(front) &&
        !item.text.ends_with(']')) {
      return {item.at,
              fmt::format("{} lacks the value in square brackets behind it", quotedText(item.text)),
              fmt::format("write '{}[{}]' or the like, without blanks", front,
                          traits_.entries.front())};
    }
    if (traits_.kind == ValueKind::outputValues) {
      const OutputItem parts = splitOutputItem(item.text);
      if (!parts.accumulator.empty() && parts.value.data() != item.text.data()) {
        const Span head{item.at.begin, item.at.begin + parts.accumulator.size()};
        if (!isAccumulator(parts.accumulator)) {
          const auto& known = InputTagSpecialOutputValueList::accumulators;
          return notAmong(head, parts.accumulator, {known.begin(), known.end()}, subject());
        }
        return notAmong({head.end + 1, item.at.end - 1}, parts.value, traits_.entries, subject());
      }
    }
    return notAmong(item.at, item.text, traits_.entries, subject());
  }

  [[nodiscard]] std::optional<Slip> itemCount(const std::vector<ListItem>& found) const {
    const auto wantedCount = static_cast<std::size_t>(std::abs(traits_.itemCount));
    const bool isWrong =
        traits_.itemCount != 0 &&
        (traits_.itemCount > 0 ? found.size() != wantedCount : found.size() > wantedCount);
    if (!isWrong) {
      return std::nullopt;
    }
    const bool areTooMany = found.size() > wantedCount;
    const Span at = areTooMany ? Span{found[wantedCount].at.begin, found.back().at.end} : whole();
    return Slip{at,
                fmt::format("{} has {} item{}, but needs {}{}", subject(), found.size(),
                            found.size() == 1 ? "" : "s", traits_.itemCount < 0 ? "at most " : "",
                            wantedCount),
                "write " + wanted(),
                {},
                {},
                code::listLength};
  }

  const RefusedValue* refused_;
  std::string_view name_;
  const InputTag* prototype_;
  TagTraits traits_;
  std::vector<std::string> allowed_;
  std::string unit_;
  std::string value_;  // without comments, of the same length as in the file
};

}  // namespace

std::string wantedValue(const InputTag& prototype, const InputBlock& block) {
  const RefusedValue nothing{prototype, block, {}, {}, {}, {}};
  return ValueDoctor(nothing).wanted();
}

Diagnostic explainValue(const RefusedValue& refused) {
  return ValueDoctor(refused).explain();
}

}  // namespace KESTparse
