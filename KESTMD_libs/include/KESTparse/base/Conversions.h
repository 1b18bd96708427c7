/// \file
/// Conversions between text and values, as the command file and the messages use them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace KESTparse {

/// A number taken from the front of a text.
template <typename T>
struct Extracted {
  T value{};                 ///< zero after a failure, the nearest limit after an overflow
  bool ok = false;           ///< whether a number stood there and fits the type
  std::size_t consumed = 0;  ///< characters read, leading white space included
};

/// Takes a `double` from the front of `text`: value, failure and consumed characters are those of
/// extraction from a text stream in the classic locale.
Extracted<double> extractDouble(std::string_view text);

/// The same for an `int`.
Extracted<int> extractInt(std::string_view text);

/// `value` with six significant digits, as a text stream writes it by default.
std::string doubleToString(double value);

/// `value` with six digits behind the point.
std::string doubleToFixed(double value);

/// Whether `text` is exactly one of "true", "1", "on" and "yes".
bool stringToBool(std::string_view text);

/// The `int` at the front of `text`, by the rules of `extractInt`; a failure is not reported.
int stringToInt(std::string_view text);

/// The `double` at the front of `text`, by the rules of `extractDouble`; a failure is not reported.
double stringToDouble(std::string_view text);

/// The value of type `T` at the front of `text`: a number by the two rules above, or the text.
template <typename T>
T fromText(std::string_view text);

/// The pieces of `text` between runs of any of `delimiters`; empty pieces do not occur.
std::vector<std::string> split(std::string_view delimiters, std::string_view text);

/// `text` without the blanks and tabs at both ends.
std::string_view trim(std::string_view text);

/// `text` with its ASCII letters in upper case.
std::string toUpper(std::string_view text);

/// `items`, each between single quotes, separated by a comma and a blank.
std::string quotedList(const std::vector<std::string>& items);

/// The length of the number at the front of `text` that has the form of nearly all real numbers:
/// digits, a sign before them, and a point and digits behind them. 0 when there is none.
std::size_t plainRealLength(std::string_view text);

/// What is wrong with `text` as a real number, in the words that the user reads; empty when it is
/// one. The words name the state in which the test stopped.
std::string realSyntaxFault(std::string_view text);

/// What is wrong with `text` as an integer; empty when it is one.
std::string integerSyntaxFault(std::string_view text);

}  // namespace KESTparse
