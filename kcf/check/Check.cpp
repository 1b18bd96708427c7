#include "check/Check.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "CommandFiles.h"
#include "KESTparse/document/Diff.h"
#include "KESTparse/document/Document.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "Tell.h"
#include "check/CheckedFile.h"
#include "check/Excerpt.h"
#include "check/GithubReport.h"
#include "check/JsonReport.h"
#include "check/Mending.h"
#include "check/SarifReport.h"
#include "check/TextReport.h"

namespace kcf {
namespace {

namespace fs = std::filesystem;

bool isSet(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

/// Whether what is written to `stream` is shown by a terminal that knows escape sequences.
bool isTerminal(int stream) {
  const char* const kind = std::getenv("TERM");
  return isatty(stream) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

bool wantsColors(const std::string& choice) {
  if (choice != "auto") {
    return choice == "always";
  }
  if (isSet("NO_COLOR")) {
    return false;
  }
  if (isSet("CLICOLOR_FORCE") && std::string_view(std::getenv("CLICOLOR_FORCE")) != "0") {
    return true;
  }
  return isTerminal(STDOUT_FILENO);
}

std::size_t columnsOfOutput() {
  constexpr std::size_t usual = 120;
  winsize size{};
  const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : usual;
}

std::size_t jobsOf(const Arguments& arguments) {
  if (!arguments.has("--jobs")) {
    return std::max(1U, std::thread::hardware_concurrency());
  }
  const std::string text = arguments.value("--jobs");
  std::size_t jobs = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), jobs);
  if (error != std::errc{} || stop != text.data() + text.size() || jobs == 0) {
    throw UsageError{"--jobs takes a whole number from 1 on, not '" + text + "'"};
  }
  return jobs;
}

/// What became of one file.
struct Outcome {
  std::optional<Report::Part> part;    ///< nothing when it could not be read or replaced
  std::string fault;                   ///< why not, or what a diff does not show
  std::vector<std::string> done = {};  ///< what was mended
  std::string diff = {};               ///< what would be mended
};

/// Shows on a terminal how far the work is.
class Progress {
 public:
  explicit Progress(std::size_t count)
      : count_(count), isShown_(count > 1 && isTerminal(STDERR_FILENO)) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { clear(); }

  void show(std::size_t done, const std::string& path) {
    constexpr std::chrono::milliseconds interval{100};
    constexpr std::size_t longest = 50;
    const auto now = std::chrono::steady_clock::now();
    if (!isShown_ || now - last_ < interval) {
      return;
    }
    last_ = now;
    std::cerr << "\r\x1b[K" << fmt::format("checking {}/{}: ", done + 1, count_)
              << excerptOf(path, {path.size(), path.size()}, longest).text << std::flush;
    isThere_ = true;
  }

  /// Makes room for other output.
  void clear() {
    if (isThere_) {
      std::cerr << "\r\x1b[K" << std::flush;
      isThere_ = false;
    }
  }

 private:
  std::size_t count_;
  bool isShown_;
  bool isThere_ = false;
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

class Check {
 public:
  Check(const Arguments& arguments, Report& report)
      : report_(&report),
        readsFiles_(!arguments.has("--no-files")),
        isStrict_(arguments.has("--strict")),
        mends_(arguments.has("--fix")),
        diffs_(arguments.has("--diff")),
        inputPath_(arguments.value("--stdin-filepath", standardInput)),
        jobs_(jobsOf(arguments)) {
    const std::vector<std::string> paths = arguments.values("PATH");
    if (diffs_ && !mends_) {
      throw UsageError{"--diff shows what --fix would do, and needs it"};
    }
    if (mends_ && !diffs_ && std::find(paths.begin(), paths.end(), standardInput) != paths.end()) {
      throw UsageError{"--fix cannot replace standard input; --fix --diff shows what it would do"};
    }
    if (arguments.has("--directory")) {
      directory_ = arguments.value("--directory");
      if (!fs::is_directory(*directory_)) {
        throw UsageError{"there is no folder '" + *directory_ + "'"};
      }
    }
  }

  int run(const std::vector<std::string>& paths) {
    const CommandFiles files = findCommandFiles(paths);
    for (const std::string& fault : files.faults) {
      refuse(fault);
    }
    if (files.paths.empty() && files.faults.empty()) {
      tell("kcf: there are no *.kcf files");
    }
    checkAll(files.paths);
    if (!diffs_) {
      report_->finish();
    }
    return status_;
  }

 private:
  void refuse(const std::string& fault) {
    tell("kcf: " + fault);
    status_ = status::wrongUsage;
  }

  [[nodiscard]] Outcome check(const std::string& path) const {
    const std::string& name = path == standardInput ? inputPath_ : path;
    const std::string shown = shownPath(name);
    try {
      std::string text = readCommandFile(path);
      const std::string directory = directory_.value_or(fs::path(name).parent_path().string());
      const std::string shownDirectory = directory.empty() ? directory : shownPath(directory);
      const auto read = [this, &directory](std::string content) {
        return std::make_unique<KESTparse::Document>(
            std::move(content), schema_,
            KESTparse::DocumentOptions{.directory = directory, .readsFiles = readsFiles_});
      };
      if (!mends_) {
        const auto document = read(std::move(text));
        return {report_->partOf(CheckedFile(shown, shownDirectory, *document)), {}};
      }
      const Mended mended = mend(text, read);
      const std::string& after = mended.document->syntax().text();
      Outcome outcome{report_->partOf(CheckedFile(shown, shownDirectory, *mended.document)), {}};
      if (diffs_) {
        outcome.diff = KESTparse::unifiedDiff(text, after, shown, shown);
        if (const std::size_t errors = outcome.part->errors; errors > 0) {
          outcome.fault = fmt::format("{}: {} error{} would remain; kcf check tells them", shown,
                                      errors, errors == 1 ? "" : "s");
        }
      } else if (!mended.done.empty()) {
        replaceCommandFile(path, text, after);
        for (const std::string& done : mended.done) {
          outcome.done.push_back(fmt::format("{}:{}", shown, done));
        }
      }
      return outcome;
    } catch (const std::exception& fault) {
      return {std::nullopt, reasonOf(fault)};
    }
  }

  /// Takes the next outcome, in the order of the files.
  void take(Outcome outcome, Progress& progress) {
    if (!outcome.part || !outcome.part->diagnostics.empty()) {
      progress.clear();
    }
    if (!outcome.part) {
      refuse(outcome.fault);
      return;
    }
    if (outcome.part->errors > 0 || (isStrict_ && outcome.part->warnings > 0)) {
      status_ = std::max(status_, status::failed);
    }
    for (const std::string& done : outcome.done) {
      progress.clear();
      tell("mended " + done);
    }
    if (diffs_) {
      std::cout << outcome.diff;
      if (!outcome.fault.empty()) {
        tell("kcf: " + outcome.fault);
      }
    } else {
      report_->add(*std::move(outcome.part));
    }
  }

  void checkAll(const std::vector<std::string>& paths) {
    Progress progress(paths.size());
    const std::size_t count = std::min(jobs_, paths.size());
    if (count <= 1) {
      for (std::size_t i = 0; i < paths.size(); ++i) {
        progress.show(i, paths[i]);
        take(check(paths[i]), progress);
      }
      return;
    }
    std::vector<std::optional<Outcome>> outcomes(paths.size());
    std::mutex mutex;
    std::condition_variable isReady;
    std::atomic<std::size_t> next = 0;
    const auto checkNext = [&] {
      const std::size_t i = next++;
      if (i >= paths.size()) {
        return false;
      }
      Outcome outcome = check(paths[i]);
      const std::lock_guard lock(mutex);
      outcomes[i] = std::move(outcome);
      isReady.notify_one();
      return true;
    };
    std::vector<std::jthread> others;
    for (std::size_t i = 1; i < count; ++i) {
      others.emplace_back([&] {
        while (checkNext()) {
        }
      });
    }
    // This thread checks, too, as long as what is to be told next is not there.
    for (std::size_t i = 0; i < paths.size(); ++i) {
      std::unique_lock lock(mutex);
      while (!outcomes[i]) {
        lock.unlock();
        progress.show(i, paths[i]);
        const bool didCheck = checkNext();
        lock.lock();
        if (!didCheck && !outcomes[i]) {
          isReady.wait_for(lock, std::chrono::milliseconds(100));
        }
      }
      Outcome outcome = *std::move(outcomes[i]);
      outcomes[i].reset();
      lock.unlock();
      take(std::move(outcome), progress);
    }
  }

  Report* report_;
  bool readsFiles_;
  bool isStrict_;
  bool mends_;
  bool diffs_;
  std::string inputPath_;
  std::size_t jobs_;
  std::optional<std::string> directory_;
  KESTparse::KestrixInputRoot schema_;
  int status_ = status::done;
};

std::unique_ptr<Report> reportOf(const Arguments& arguments) {
  const std::string form = arguments.value("--format", "text");
  if (form == "json") {
    return std::make_unique<JsonReport>(std::cout);
  }
  if (form == "sarif") {
    return std::make_unique<SarifReport>(std::cout);
  }
  if (form == "github") {
    return std::make_unique<GithubReport>(std::cout);
  }
  return std::make_unique<TextReport>(std::cout, wantsColors(arguments.value("--color", "auto")),
                                      columnsOfOutput());
}

int runCheck(const Arguments& arguments) {
  const std::unique_ptr<Report> report = reportOf(arguments);
  return Check(arguments, *report).run(arguments.values("PATH"));
}

}  // namespace

Verb checkVerb() {
  return {"check",
          "Check and format",
          "Tell all that is wrong with command files, where, and how to mend it",
          R"(All faults of a file are told in one run, with those that main-converter does
not see. Names in a command file count from the folder that it stands in, or
from DIR. "kcf explain CODE" tells more about the code of a fault.

The status is 0 when there is no error, and with --strict no warning; 1 when
there is one; and 2 when a PATH cannot be read or the usage is wrong.)",
          {{.name = "--format",
            .help = "How to tell it",
            .value = "FORM",
            .choices = {"text", "json", "sarif", "github"}},
           {.name = "--strict", .help = "Let warnings count as errors for the status"},
           {.name = "--fix", .help = "Apply the certain fixes, and tell what remains"},
           {.name = "--diff", .help = "With --fix: change nothing; print what would change"},
           {.name = "--no-files", .help = "Open none of the files that the command files name"},
           {.name = "--directory",
            .help = "Folder that names in the command files count from",
            .value = "DIR",
            .isPath = true},
           {.name = "--color",
            .help = "When to use colors; auto minds NO_COLOR, CLICOLOR_FORCE and the terminal",
            .value = "WHEN",
            .choices = {"auto", "always", "never"}},
           {.name = "--jobs",
            .help = "How many files to check side by side; all processors by default",
            .value = "N"},
           {.name = "--stdin-filepath",
            .help = "Name of what comes from standard input",
            .value = "PATH",
            .isPath = true},
           {.name = "PATH",
            .help = "A command file, a folder with all *.kcf below it, or - for standard input",
            .value = "PATH",
            .required = true,
            .repeatable = true,
            .isPath = true}},
          runCheck,
          {{"Check a setup before it is computed", "kcf check setup.kcf"},
           {"Apply the certain fixes", "kcf check --fix setup.kcf"},
           {"Check all setups of a project, also for warnings", "kcf check --strict ."}}};
}

}  // namespace kcf
