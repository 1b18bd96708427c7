/// \file
/// The whole setups that the program carries.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kcf {

/// A whole setup.
struct Setup {
  struct File {
    std::string name;
    std::string_view text;
  };
  std::string name;
  std::string help;  ///< what its first comment tells
  bool isStart;      ///< whether `kcf template` writes it
  std::vector<File> files;
};

/// The starts and then the examples.
std::vector<Setup> setups();

/// The lines, counted from 1, that open the blocks of a command file, with the paths of the blocks.
std::vector<std::pair<std::size_t, std::string>> openedBlocks(std::string_view text);

}  // namespace kcf
