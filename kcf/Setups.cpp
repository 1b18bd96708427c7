#include "Setups.h"

#include <sstream>

#include "Assets.h"

namespace kcf {
namespace {

/// What the comment at the head of a command file tells.
std::string headComment(std::string_view text) {
  std::string told;
  std::istringstream lines{std::string(text)};
  for (std::string line; std::getline(lines, line) && line.starts_with("// ");) {
    told += (told.empty() ? "" : " ") + line.substr(3);
  }
  return told;
}

}  // namespace

std::vector<Setup> setups() {
  std::vector<Setup> all;
  for (const std::string_view folder : {"starts", "examples"}) {
    for (const Asset* file : assetsIn(folder)) {
      const std::string_view rest = file->name.substr(folder.size() + 1);
      const std::string name(rest.substr(0, rest.find('/')));
      if (all.empty() || all.back().name != name) {
        all.push_back({name, "", folder == "starts", {}});
      }
      const std::string fileName(rest.substr(name.size() + 1));
      if (fileName == "setup.kcf") {
        all.back().help = headComment(file->content);
        all.back().files.insert(all.back().files.begin(), {fileName, file->content});
      } else {
        all.back().files.push_back({fileName, file->content});
      }
    }
  }
  return all;
}

std::vector<std::pair<std::size_t, std::string>> openedBlocks(std::string_view text) {
  std::vector<std::pair<std::size_t, std::string>> opened;
  std::string path;
  std::istringstream lines{std::string(text)};
  std::size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    line = line.substr(0, line.find("//"));
    line.erase(0, line.find_first_not_of(' '));
    line.erase(line.find_last_not_of(' ') + 1);
    if (line.ends_with(" {")) {
      path += "/" + line.substr(0, line.size() - 2);
      opened.emplace_back(number, path);
    } else if (line == "}" && !path.empty()) {
      path.erase(path.rfind('/'));
    }
  }
  return opened;
}

}  // namespace kcf
