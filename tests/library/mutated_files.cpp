/// \file
/// Holds the checker against the converter on files that are nearly right: changes bytes, words and
/// lines of the command files below folders, and does with each what the fuzz target `Check` does.
///
///     mutated-files COUNT SEED FOLDER...

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

/// The text at hand, and where it is put when something does not hold.
std::string text;
fs::path findPath;

extern "C" void keepFind(int /*signal*/) {
  std::ofstream(findPath, std::ios::binary) << text;
  std::fprintf(stderr, "the text is kept as %s\n", findPath.c_str());
  std::_Exit(EXIT_FAILURE);
}

class Mutations {
 public:
  Mutations(std::uint64_t seed, std::vector<std::string> words)
      : chance_(seed), words_(std::move(words)) {}

  std::size_t below(std::size_t end) { return chance_() % std::max<std::size_t>(end, 1); }

  void apply() {
    const std::size_t at = below(text.size());
    const std::size_t line = text.rfind('\n', at) + 1;
    const std::size_t nextLine = std::min(text.find('\n', at), text.size());
    constexpr std::size_t most = 20;
    switch (below(8)) {
      case 0:
        if (!text.empty()) {
          text[at] = static_cast<char>(below(256));
        }
        break;
      case 1:
        text.erase(at, below(most));
        break;
      case 2:
        text.insert(at, words_[below(words_.size())]);
        break;
      case 3:
        text.erase(line, nextLine + 1 - line);
        break;
      case 4:
        text.insert(line, text.substr(line, nextLine + 1 - line));
        break;
      case 5:
        text.resize(below(8) == 0 ? at : text.size());
        break;
      default:
        changeWord(at);
    }
  }

 private:
  void changeWord(std::size_t at) {
    const std::size_t begin = std::min(text.find_first_not_of(" \n{}()=", at), text.size());
    const std::size_t end = std::min(text.find_first_of(" \n{}()=", begin), text.size());
    text.replace(begin, end - begin, words_[below(words_.size())]);
  }

  std::mt19937_64 chance_;
  std::vector<std::string> words_;
};

}  // namespace

// Whatever is wrong with its files ends the run.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  std::map<fs::path, std::vector<std::string>> filesOf;  // by folder, since names count from it
  std::set<std::string> words;
  for (auto folder = arguments.begin() + 2; folder != arguments.end(); ++folder) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(*folder)) {
      if (entry.path().extension() != ".kcf") {
        continue;
      }
      std::ifstream in(entry.path(), std::ios::binary);
      const std::string content((std::istreambuf_iterator<char>(in)), {});
      filesOf[fs::absolute(entry.path().parent_path())].push_back(content);
      for (std::size_t begin = 0; begin < content.size();) {
        const std::size_t end = std::min(content.find_first_of(" \n", begin), content.size());
        words.insert(content.substr(begin, end - begin));
        begin = end + 1;
      }
    }
  }
  std::size_t numFiles = 0;
  for (const auto& [folder, files] : filesOf) {
    numFiles += files.size();
  }
  const std::size_t count = std::stoul(arguments[0]);
  Mutations mutations(std::stoull(arguments[1]), {words.begin(), words.end()});
  findPath = fs::absolute("mutated.kcf");
  static_cast<void>(std::signal(SIGABRT, keepFind));
  for (const auto& [folder, files] : filesOf) {
    fs::current_path(folder);
    for (std::size_t i = 0; i < count * files.size() / numFiles; ++i) {
      text = files[mutations.below(files.size())];
      for (std::size_t changes = 1 + mutations.below(3); changes > 0; --changes) {
        mutations.apply();
      }
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    }
  }
  return EXIT_SUCCESS;
}
