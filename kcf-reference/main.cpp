/// \file
/// Tells the vocabulary of KCF command files.

#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string_view>

#include "KESTparse/root/KestrixInputRoot.h"
#include "Vocabulary.h"

int main(int argc, char** argv) {
  if (argc != 2 || std::string_view(argv[1]) != "json") {
    std::cerr << "usage: kcf-reference json\n";
    return 2;
  }
  const KESTparse::KestrixInputRoot root;
  std::cout << KESTparse::vocabulary(root).dump(2) << std::endl;
  return std::cout ? EXIT_SUCCESS : EXIT_FAILURE;
}
