#include "preview/Preview.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <map>
#include <stdexcept>
#include <thread>

#include "CommandFiles.h"
#include "OutputFile.h"
#include "Tell.h"
#include "preview/Model.h"
#include "preview/Page.h"

namespace kcf {
namespace {

namespace fs = std::filesystem;

/// When and how large the files are that a page was made of.
using State = std::map<fs::path, std::pair<fs::file_time_type, std::uintmax_t>>;

State stateOf(const std::vector<fs::path>& paths) {
  State state;
  for (const fs::path& path : paths) {
    std::error_code fault;
    const auto time = fs::last_write_time(path, fault);
    if (!fault) {
      const auto size = fs::file_size(path, fault);
      state[path] = {time, fault ? 0 : size};
    }
  }
  return state;
}

class Preview {
 public:
  Preview(fs::path setup, fs::path folder, fs::path page)
      : setup_(std::move(setup)), folder_(std::move(folder)), page_(std::move(page)) {}

  void write(bool isWatched) {
    const Model model = readModel(setup_, folder_);
    watched_ = model.watched;
    for (const fs::path& source : watched_) {
      std::error_code unknown;
      if (fs::equivalent(source, page_, unknown)) {
        throw UsageError{"the page would take the place of '" + source.string() +
                         "', which it is made of; give it another name with -o"};
      }
    }
    const fs::path stampPath = page_.string() + ".stamp.js";
    const std::string stamp =
        isWatched ? std::to_string(std::chrono::steady_clock::now().time_since_epoch().count())
                  : "";
    writeFile(page_, pageOf(model, stampPath.filename().string(), stamp), true);
    if (isWatched) {
      writeFile(stampPath, "globalThis.kcfStamp?.(\"" + stamp + "\");\n", true);
    }
  }

  /// Writes the page anew whenever a file changes; ends only with the process.
  [[noreturn]] void watch() {
    constexpr std::chrono::milliseconds pause(300);
    watched_ = {setup_};
    for (State last;; std::this_thread::sleep_for(pause)) {
      // The state is taken before the files are read: a change while they are read is seen next.
      const State now = stateOf(watched_);
      if (now == last) {
        continue;
      }
      try {
        write(true);
        // A file that is named anew counts as it was read.
        last = now;
        for (const auto& [path, value] : stateOf(watched_)) {
          last.try_emplace(path, value);
        }
        std::erase_if(last, [this](const auto& entry) {
          return std::find(watched_.begin(), watched_.end(), entry.first) == watched_.end();
        });
        std::cout << "wrote " << page_.string() << std::endl;
      } catch (const std::runtime_error& error) {
        last = now;
        tell(std::string("kcf: ") + error.what());
      }
    }
  }

 private:
  fs::path setup_;
  fs::path folder_;
  fs::path page_;
  std::vector<fs::path> watched_;
};

int runPreview(const Arguments& arguments) {
  const fs::path setup = arguments.value("PATH");
  if (setup == standardInput) {
    throw UsageError{"preview reads a file, and not standard input"};
  }
  const fs::path folder =
      arguments.has("--directory") ? fs::path(arguments.value("--directory")) : setup.parent_path();
  const fs::path page = arguments.has("--output") ? fs::path(arguments.value("--output"))
                                                  : fs::path(setup).replace_extension(".html");
  Preview preview(setup, folder.empty() ? fs::path(".") : folder, page);
  if (arguments.has("--watch")) {
    preview.watch();
  }
  preview.write(false);
  return status::done;
}

}  // namespace

Verb previewVerb() {
  return {"preview",
          "Work with command files",
          "Write a page that shows a setup before it runs",
          R"(The page holds the mesh, the series, the chain of cross sections, the bed, the
couplings and a summary to sign. It needs no server and no other file. A setup
with faults is shown as far as it can be read. Names in the command file count
from the folder that it stands in.)",
          {{.name = "PATH", .help = "The command file", .required = true, .isPath = true},
           {.name = "--output",
            .help = "The page; beside the command file when it is left out",
            .value = "FILE",
            .letter = 'o',
            .isPath = true},
           {.name = "--directory",
            .help = "Folder from which names in the command file count",
            .value = "DIR",
            .isPath = true},
           {.name = "--watch",
            .help = "Write the page anew when a file changes; an open page shows it"}},
          runPreview,
          {{"Look at a setup", "kcf preview setup.kcf && xdg-open setup.html"},
           {"See each change as it is made", "kcf preview setup.kcf --watch"}}};
}

}  // namespace kcf
