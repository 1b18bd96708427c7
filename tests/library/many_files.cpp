/// \file
/// Reads many command files in one process, in random order on several threads, and holds what is
/// said of each against what the converter says in a process of its own.
///
///     many-files CONVERTER THREADS FOLDER...
///
/// All FOLDER/**/*.kcf are read. The seed of the order is printed when something differs.

#include <sys/wait.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <nlohmann/json.hpp>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "JsonEmission.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/Guard.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace fs = std::filesystem;
using namespace KESTparse;

namespace {

/// What a conversion leaves behind.
struct Told {
  bool converts = false;
  std::string out;
  std::string errors;

  bool operator==(const Told&) const = default;
};

/// Keeps what the converter prints, and lives on.
class RecordingConsole : public Console {
 public:
  explicit RecordingConsole(Told& told) : told_(&told) {}
  void show(int level, const std::string& text) override {
    (level < level::information ? told_->errors : told_->out) +=
        (level < level::information ? "\nWARNING -> " : "-> ") + wrapText(text) + "\n";
  }

 protected:
  void onError(const std::string& text) override {
    told_->errors += "\nERROR -> " + wrapText(text) + "\n";
    told_->out += "Simulation stopped due to error(s).\n";
    throw Stopped{Stopped::Kind::error, text};
  }
  void onAssertion(const std::string& text, const std::string& where) override {
    told_->out += "A fatal error occured!\n";
    told_->errors += "\nEXCEPTION -> " + wrapText(text + where) + "\n";
    throw Stopped{Stopped::Kind::assertion, text};
  }

 private:
  Told* told_;
};

/// Writes to the end of a text.
class Appending : public std::streambuf {
 public:
  explicit Appending(std::string& text) : text_(&text) {}

 protected:
  int overflow(int c) override {
    text_->push_back(static_cast<char>(c));
    return c;
  }
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    text_->append(text, static_cast<std::size_t>(size));
    return size;
  }

 private:
  std::string* text_;
};

/// What depends on the build is left out, and so is what the runtime says of an exception.
std::string comparable(const std::string& text) {
  static const std::regex build(R"(,\s+in\s+file:(.|\n)*)");
  static const std::regex thrown(R"(terminate called after(.|\n)*)");
  return std::regex_replace(std::regex_replace(text, build, ""), thrown, "");
}

Told convertHere(const KestrixInputRoot& schema, const fs::path& file) {
  Told told;
  RecordingConsole console(told);
  GlobalValues values;
  values.basePath = "./";
  values.directory = file.parent_path().string();
  values.console = &console;
  const ActiveValues active(values);
  const auto root = schema.logicalClone(nullptr);
  stopOf([&] {
    InputParser parser(*root);
    std::ifstream in(file);
    parser.parse(in, false, file.filename().string());
    Appending errors(told.errors);
    std::ostream summary(&errors);
    const bool isValid = parser.validateSummary(summary);
    ASSERT(isValid, "Parsing the input file failed.");
    // The converter writes it without the library, and must write the same.
    told.out += documentOf(*root).dump(2) + "\n";
    told.converts = true;
  });
  told.errors = comparable(told.errors);
  return told;
}

std::string contentOf(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

Told convertAlone(const fs::path& converter, const fs::path& file, const fs::path& scratch) {
  const std::string command = "cd '" + file.parent_path().string() + "' && '" + converter.string() +
                              "' '" + file.filename().string() + "' >'" +
                              (scratch / "out").string() + "' 2>'" + (scratch / "errors").string() +
                              "'";
  const int status = std::system(("{ " + command + "; } 2>/dev/null").c_str());
  return {WIFEXITED(status) && WEXITSTATUS(status) == 0, contentOf(scratch / "out"),
          comparable(contentOf(scratch / "errors"))};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::cerr << "usage: many-files CONVERTER THREADS FOLDER...\n";
    return 2;
  }
  std::vector<fs::path> files;
  for (int i = 3; i < argc; ++i) {
    for (const auto& entry : fs::recursive_directory_iterator(argv[i])) {
      if (entry.path().extension() == ".kcf") {
        files.push_back(fs::absolute(entry.path()));
      }
    }
  }
  fs::path scratch = fs::temp_directory_path() / "many-files-XXXXXX";
  std::string pattern = scratch.string();
  if (mkdtemp(pattern.data()) == nullptr) {
    return 2;
  }
  scratch = pattern;
  std::vector<Told> alone;
  for (const fs::path& file : files) {
    alone.push_back(convertAlone(fs::absolute(argv[1]), file, scratch));
  }
  fs::remove_all(scratch);

  constexpr std::size_t rounds = 3;
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < rounds * files.size(); ++i) {
    order.push_back(i % files.size());
  }
  const unsigned seed = std::random_device{}();
  std::shuffle(order.begin(), order.end(), std::mt19937(seed));
  const KestrixInputRoot schema;
  std::atomic<std::size_t> next{0};
  std::atomic<std::size_t> differing{0};
  std::mutex report;
  const auto work = [&] {
    for (std::size_t i = next++; i < order.size(); i = next++) {
      const std::size_t place = order[i];
      const Told told = convertHere(schema, files[place]);
      if (!(told == alone[place])) {
        const std::lock_guard lock(report);
        ++differing;
        std::cout << "seed " << seed << ": " << files[place] << " differs\n--- alone\n"
                  << alone[place].errors << "\n--- here\n"
                  << told.errors << "\n";
      }
    }
  };
  std::vector<std::thread> threads(std::stoul(argv[2]));
  for (std::thread& thread : threads) {
    thread = std::thread(work);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  std::cout << order.size() - differing << " passed, " << differing << " failed\n";
  return differing == 0 && !files.empty() ? 0 : 1;
}
