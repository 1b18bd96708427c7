/// \file
/// Compares how the document shows numbers and texts with what the library prints of them:
/// `compare-printing COUNT` takes COUNT random ones. All bytes must agree, and so must the report
/// of a text that is no UTF-8.

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include "DocumentWriter.h"

namespace {

using Random = std::mt19937_64;

/// Plain letters, and now and then what is escaped or is one byte of several.
std::string randomText(Random& random) {
  constexpr std::string_view special =
      "\"\\/\b\f\n\r\t\x01\x1f\x7f\xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80\xff";
  std::string text(random() % 24, ' ');
  const std::uint64_t rarity = 1 + random() % 16;
  for (char& c : text) {
    c = random() % rarity == 0 ? special[random() % special.size()]
                               : static_cast<char>(' ' + random() % 95);
  }
  return random() % 8 == 0 ? text + "\xc3\xbc\xe2\x82\xac" : text;
}

/// Any bits, or a number of few digits as users write them.
double randomDouble(Random& random) {
  constexpr double scales[] = {1, 10, 100, 1e3, 1e5, 1e8, 1e-3, 1e20};
  const auto digits = static_cast<double>(static_cast<std::int64_t>(random()) >> (random() % 60));
  return random() % 2 == 0 ? std::bit_cast<double>(random()) : digits / scales[random() % 8];
}

/// What a printing gives, or the report that it throws.
template <class Print>
std::string toldBy(Print print) {
  try {
    return print();
  } catch (const nlohmann::json::exception& fault) {
    return fault.what();
  }
}

template <class Value, class Put>
bool agrees(const Value& value, Put put) {
  const std::string expected = toldBy([&] { return nlohmann::json(value).dump(); });
  const std::string written = toldBy([&] {
    static KESTparse::DocumentBuffer buffer;
    std::ostringstream out;
    buffer.setStream(&out);
    put(buffer);
    buffer.flush();
    return std::move(out).str();
  });
  if (written != expected) {
    std::cout << "differs: " << written << " instead of " << expected << "\n";
  }
  return written == expected;
}

}  // namespace

int main(int argc, char** argv) {
  const long long count = argc > 1 ? std::atoll(argv[1]) : 0;
  if (count <= 0) {
    std::cerr << "usage: compare-printing COUNT\n";
    return EXIT_FAILURE;
  }
  long long differences = 0;
  Random random(1);
  for (long long i = 0; i < count; ++i) {
    bool isSame = false;
    if (i % 4 == 0) {
      const std::string text = randomText(random);
      isSame = agrees(text, [&](auto& buffer) { buffer.putText(text); });
    } else if (i % 4 == 1) {
      const auto number = static_cast<int>(static_cast<std::int32_t>(random()) >> (random() % 31));
      isSame = agrees(number, [&](auto& buffer) { buffer.putNumber(number); });
    } else {
      const double number = randomDouble(random);
      isSame = agrees(number, [&](auto& buffer) { buffer.putNumber(number); });
    }
    differences += isSame ? 0 : 1;
  }
  std::cout << count << " numbers and texts, " << differences << " differences\n";
  return differences == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
