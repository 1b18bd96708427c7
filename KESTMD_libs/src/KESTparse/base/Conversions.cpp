#include "KESTparse/base/Conversions.h"

#include <array>
#include <charconv>
#include <istream>
#include <locale>
#include <streambuf>
#include <system_error>

#include "KESTparse/base/PlainNumbers.h"

namespace KESTparse {
namespace {

/// Reads from memory without copying it.
class ViewBuffer : public std::streambuf {
 public:
  explicit ViewBuffer(std::string_view text) {
    char* begin = const_cast<char*>(text.data());
    setg(begin, begin, begin + text.size());
  }
  [[nodiscard]] std::size_t consumed() const { return static_cast<std::size_t>(gptr() - eback()); }
};

template <typename T>
Extracted<T> extractByStream(std::string_view text) {
  ViewBuffer buffer(text);
  std::istream in(&buffer);
  in.imbue(std::locale::classic());
  Extracted<T> result;
  result.ok = static_cast<bool>(in >> result.value);
  result.consumed = buffer.consumed();
  return result;
}

bool isSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Whether a stream, having read a number up to here, would stop before `c`.
bool endsNumber(char c) {
  return !isDigit(c) && c != '.' && c != 'e' && c != 'E' && c != '+' && c != '-';
}

template <typename T>
Extracted<T> extract(std::string_view text) {
  std::size_t begin = 0;
  while (begin < text.size() && isSpace(text[begin])) {
    ++begin;
  }
  if (begin == text.size()) {
    return {.consumed = begin};
  }
  const std::size_t digits = begin + (begin < text.size() && text[begin] == '-' ? 1 : 0);
  // The plain forms, which are nearly all, need no stream; it decides whatever is out of the
  // ordinary.
  if (digits < text.size() && isDigit(text[digits])) {
    Extracted<T> result;
    const char* const end = text.data() + text.size();
    const auto endsAt = [&result, &text, end](const char* stop) {
      result.ok = stop == end || endsNumber(*stop);
      result.consumed = static_cast<std::size_t>(stop - text.data());
      return result.ok;
    };
    const char* const stop = readPlainNumber(text.data() + begin, end, result.value);
    if (stop != nullptr && endsAt(stop)) {
      return result;
    }
    const auto [last, error] = std::from_chars(text.data() + begin, end, result.value);
    if (error == std::errc{} && endsAt(last)) {
      return result;
    }
  }
  return extractByStream<T>(text);
}

/// The kinds of character that the test of a real number tells apart.
enum class RealCharacter { sign, digit, point, exponent, blank, tab, other };

constexpr RealCharacter classify(char c) {
  switch (c) {
    case '+':
    case '-':
      return RealCharacter::sign;
    case '.':
      return RealCharacter::point;
    case 'e':
    case 'E':
      return RealCharacter::exponent;
    case ' ':
      return RealCharacter::blank;
    case '\t':
      return RealCharacter::tab;
    default:
      return isDigit(c) ? RealCharacter::digit : RealCharacter::other;
  }
}

constexpr int failed = -1;

/// The next state of the test of a real number, by state and character.
constexpr std::array<std::array<int, 7>, 8> realStates{{
    {0, 0, 0, 0, 0, 0, 0},                           // behind a blank
    {2, 3, failed, failed, failed, failed, failed},  // start
    {failed, 3, failed, 6, failed, failed, failed},  // behind a leading sign
    {failed, 3, 4, 6, 0, 0, failed},                 // integer digits
    {failed, 5, failed, 6, failed, failed, failed},  // behind the point
    {failed, 5, failed, 6, 0, 0, failed},            // fraction digits
    {7, 7, failed, failed, failed, failed, failed},  // behind the exponent letter
    {failed, 7, failed, failed, 0, failed, failed},  // exponent
}};

}  // namespace

Extracted<double> extractDouble(std::string_view text) {
  return extract<double>(text);
}

Extracted<int> extractInt(std::string_view text) {
  return extract<int>(text);
}

std::string doubleToString(double value) {
  std::array<char, 32> text{};
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 6);
  return error == std::errc{} ? std::string(text.data(), end) : std::string{};
}

std::string doubleToFixed(double value) {
  // The largest double has 309 digits before the point.
  std::array<char, 400> text{};
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 6);
  return error == std::errc{} ? std::string(text.data(), end) : std::string{};
}

bool stringToBool(std::string_view text) {
  return text == "true" || text == "1" || text == "on" || text == "yes";
}

int stringToInt(std::string_view text) {
  return extractInt(text).value;
}

double stringToDouble(std::string_view text) {
  return extractDouble(text).value;
}

template <>
int fromText<int>(std::string_view text) {
  return stringToInt(text);
}

template <>
double fromText<double>(std::string_view text) {
  return stringToDouble(text);
}

template <>
std::string fromText<std::string>(std::string_view text) {
  return std::string(text);
}

std::vector<std::string> split(std::string_view delimiters, std::string_view text) {
  std::vector<std::string> pieces;
  std::size_t begin = text.find_first_not_of(delimiters);
  while (begin != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(delimiters, begin), text.size());
    pieces.emplace_back(text.substr(begin, end - begin));
    begin = text.find_first_not_of(delimiters, end);
  }
  return pieces;
}

std::string_view trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

std::string toUpper(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') {
      c = static_cast<char>(c - 'a' + 'A');
    }
  }
  return upper;
}

std::string quotedList(const std::vector<std::string>& items) {
  std::string list;
  for (const std::string& item : items) {
    list += list.empty() ? "'" : ", '";
    list += item;
    list += '\'';
  }
  return list;
}

std::size_t plainRealLength(std::string_view text) {
  const auto behindDigits = [text](std::size_t place) {
    while (place < text.size() && isDigit(text[place])) {
      ++place;
    }
    return place;
  };
  const std::size_t begin = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  const std::size_t end = behindDigits(begin);
  if (end == begin) {
    return 0;
  }
  return end < text.size() && text[end] == '.' ? behindDigits(end + 1) : end;
}

std::string realSyntaxFault(std::string_view text) {
  if (text.empty()) {
    return "Empty value instead of a double found";
  }
  if (plainRealLength(text) == text.size()) {
    return {};
  }
  int state = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int next =
        realStates[static_cast<std::size_t>(state)][static_cast<std::size_t>(classify(text[i]))];
    if (next != failed) {
      state = next;
    } else if (i + 1 < text.size()) {
      return "Value '" + std::string(text) +
             "' is not a double (last_stage: " + std::to_string(state) + ")";
    } else {
      state = failed;
    }
  }
  if (state == 3 || state == 4 || state == 5 || state == 7) {
    return {};
  }
  return "Value '" + std::string(text) + "' can not be recognized as a double";
}

std::string integerSyntaxFault(std::string_view text) {
  if (text.empty()) {
    return "Empty string as value received";
  }
  if (!isDigit(text.front()) && text.front() != '-') {
    return std::string("Character '") + text.front() + "' is invalid for an integer";
  }
  for (const char c : text.substr(1)) {
    if (!isDigit(c)) {
      return std::string("Non numeric character '") + c + "' found";
    }
  }
  return {};
}

}  // namespace KESTparse
