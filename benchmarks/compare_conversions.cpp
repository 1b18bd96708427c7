/// \file
/// Compares the conversion of texts to numbers with that of a text stream: `compare-conversions
/// COUNT` takes COUNT random and hostile texts. Value, failure and consumed characters must agree
/// to the bit.

#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <locale>
#include <random>
#include <streambuf>
#include <string>
#include <string_view>

#include "KESTparse/base/Conversions.h"

namespace {

using KESTparse::Extracted;
using Random = std::mt19937_64;

/// A stream over a text, made once: what costs is its making.
class TextStream : private std::streambuf {
 public:
  TextStream() { in_.imbue(std::locale::classic()); }

  template <typename T>
  Extracted<T> extract(std::string_view text) {
    char* const begin = const_cast<char*>(text.data());
    setg(begin, begin, begin + text.size());
    in_.clear();
    Extracted<T> result;
    result.ok = static_cast<bool>(in_ >> result.value);
    result.consumed = static_cast<std::size_t>(gptr() - eback());
    return result;
  }

 private:
  std::istream in_{this};
};

std::size_t below(Random& random, std::size_t bound) {
  return static_cast<std::size_t>(random() % bound);
}

/// Characters that numbers are made of, and a few that end them.
std::string randomCharacters(Random& random) {
  constexpr std::string_view characters =
      "0123456789012345678900..eE+--++ \t\n\r\v\f,xXpPinfaNd\0()#/";
  std::string text(below(random, 26), ' ');
  for (char& c : text) {
    c = characters[below(random, characters.size())];
  }
  return text;
}

std::string digits(Random& random, std::size_t longest) {
  std::string text(below(random, longest + 1), '0');
  for (char& c : text) {
    c = static_cast<char>('0' + below(random, 10));
  }
  return text;
}

/// A number in one of the forms that users write, now and then with a flaw.
std::string randomNumber(Random& random) {
  constexpr std::string_view signs[] = {"", "", "", "-", "+", "- ", "--"};
  constexpr std::string_view ends[] = {"",  "",   "",  " ", "\n", "e", "e+",
                                       ".", "..", "x", ",", "-1", "\0"};
  constexpr std::string_view exponents[] = {"e", "E", "e-", "e+", "E-", "e308", "e-308", "e-32"};
  std::string text(below(random, 3), ' ');
  text += signs[below(random, std::size(signs))];
  text += digits(random, below(random, 50) == 0 ? 400 : 20);
  if (below(random, 2) == 0) {
    text += '.' + digits(random, 20);
  }
  if (below(random, 4) == 0) {
    text += exponents[below(random, std::size(exponents))];
    text += digits(random, 3);
  }
  return text += ends[below(random, std::size(ends))];
}

/// A double of any bits, printed so that it can be read back, or not quite.
std::string randomDouble(Random& random) {
  const auto value = std::bit_cast<double>(random());
  std::string text(64, ' ');
  const int precision = static_cast<int>(below(random, 20));
  text.resize(
      static_cast<std::size_t>(std::snprintf(text.data(), text.size(), "%.*g", precision, value)));
  return text;
}

std::string randomText(Random& random) {
  switch (below(random, 3)) {
    case 0:
      return randomCharacters(random);
    case 1:
      return randomNumber(random);
    default:
      return randomDouble(random);
  }
}

/// Equal to the bit, so that the sign of a zero counts.
template <typename T>
bool areSame(T a, T b) {
  using Bits = std::array<unsigned char, sizeof(T)>;
  return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

template <typename T>
bool agree(const Extracted<T>& ours, const Extracted<T>& streams) {
  return areSame(ours.value, streams.value) && ours.ok == streams.ok &&
         ours.consumed == streams.consumed;
}

}  // namespace

int main(int argc, char** argv) {
  const long long count = argc > 1 ? std::atoll(argv[1]) : 0;
  if (count <= 0) {
    std::cerr << "usage: compare-conversions COUNT\n";
    return EXIT_FAILURE;
  }
  long long differences = 0;
  for (int part = 0; part < 64; ++part) {
    Random random(static_cast<std::uint64_t>(part));
    TextStream stream;
    for (long long i = part; i < count; i += 64) {
      const std::string text = randomText(random);
      if (agree(KESTparse::extractDouble(text), stream.extract<double>(text)) &&
          agree(KESTparse::extractInt(text), stream.extract<int>(text))) {
        continue;
      }
      ++differences;
      std::cout << "differs: '" << text << "'\n";
    }
  }
  std::cout << count << " texts, " << differences << " differences\n";
  return differences == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
