/// \file
/// What a conversion cannot be faster than: `floor json FILE` and `floor rapidjson FILE` read a
/// document and print it, each with its library; `floor numbers FILE...` reads numbers, and tells
/// what CPU time [s] their conversion took by itself.

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace {

void printDocument(const char* path) {
  std::ifstream in(path);
  const nlohmann::json document = nlohmann::json::parse(in);
  std::cout << document.dump(2) << std::endl;
}

std::string readWhole(const char* path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  std::string text(static_cast<std::size_t>(in.tellg()), ' ');
  in.seekg(0);
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  return text;
}

void printDocumentByRapidJson(const char* path) {
  rapidjson::Document document;
  document.Parse(readWhole(path).c_str());
  rapidjson::StringBuffer text;
  rapidjson::PrettyWriter writer(text);
  document.Accept(writer);
  std::cout << text.GetString() << std::endl;
}

std::vector<double> readNumbers(const std::string& text) {
  std::vector<double> numbers;
  const char* const end = text.data() + text.size();
  for (const char* begin = text.data(); begin != end;) {
    double number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error == std::errc{}) {
      numbers.push_back(number);
      begin = stop;
    } else {
      ++begin;
    }
  }
  return numbers;
}

}  // namespace

// Whatever is wrong with its files ends the measurement.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  const std::string_view what = argc > 2 ? argv[1] : "";
  if (what == "json") {
    printDocument(argv[2]);
    return EXIT_SUCCESS;
  }
  if (what == "rapidjson") {
    printDocumentByRapidJson(argv[2]);
    return EXIT_SUCCESS;
  }
  if (what != "numbers") {
    std::cerr << "usage: floor json|rapidjson FILE | floor numbers FILE...\n";
    return EXIT_FAILURE;
  }
  std::size_t count = 0;
  std::clock_t spent = 0;
  for (int i = 2; i < argc; ++i) {
    const std::string text = readWhole(argv[i]);
    const std::clock_t begin = std::clock();
    count += readNumbers(text).size();
    spent += std::clock() - begin;
  }
  std::cout << count << " numbers in " << static_cast<double>(spent) / CLOCKS_PER_SEC << " s\n";
  return EXIT_SUCCESS;
}
