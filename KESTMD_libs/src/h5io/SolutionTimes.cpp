#include "h5io/SolutionTimes.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <mutex>
#include <new>
#include <string_view>

#include "KESTparse/base/Console.h"
#include "KESTparse/base/Files.h"
#include "KESTparse/base/GlobalValues.h"
#include "ResultFile.h"

namespace h5io {
namespace {

// HDF5 trusts what it reads: a damaged file can crash it or keep it busy for ever. It therefore
// reads in a process of its own, with limits, which sends the times or its fault through a pipe.
// Any thread may split it off: it calls HDF5, which only such processes call, so that its locks are
// free, and the C library, which makes its memory usable behind a fork. It must not touch what
// another thread may have locked: the console, and all else that threads share.

constexpr unsigned longestReading = 120;              // [s]
constexpr rlim_t memoryForReading = rlim_t{4} << 30;  // [bytes]
constexpr char timesFollow = 'T';
constexpr char faultFollows = 'F';

/// Keeps the process from running for ever, from taking all memory of the machine, and from telling
/// of its end what its parent tells.
void limitProcess() {
  for (const int signal : {SIGABRT, SIGALRM, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
    std::signal(signal, SIG_DFL);
  }
  // The thread may have blocked the alarm.
  sigset_t none{};
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const rlimit noCore{};
  setrlimit(RLIMIT_CORE, &noCore);
  alarm(longestReading);
  rlim_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  rlimit limit{};
  if (getrlimit(RLIMIT_AS, &limit) == 0) {
    const rlim_t wanted = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + memoryForReading;
    limit.rlim_cur = std::min(wanted, limit.rlim_cur);
    setrlimit(RLIMIT_AS, &limit);
  }
}

/// What the reading process sends; nothing when the file cannot be opened, or memory does not
/// suffice.
std::string answerFor(const std::string& fileName) {
  try {
    const std::vector<double> times = readTimes(fileName);
    return timesFollow +
           std::string(reinterpret_cast<const char*>(times.data()), times.size() * sizeof(double));
  } catch (const OpenFileFailed&) {
    return {};
  } catch (const Exception& exception) {
    return faultFollows + exception.getMessage();
  } catch (const std::bad_alloc&) {
    return {};
  }
}

void sendAll(int pipe, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(pipe, text.data(), text.size());
    if (written < 0 && errno != EINTR) {
      return;
    }
    text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
}

std::string receiveAll(int pipe) {
  std::string text;
  char piece[4096];
  for (ssize_t count = 1; count != 0;) {
    count = read(pipe, piece, sizeof piece);
    if (count < 0 && errno != EINTR) {
      break;
    }
    text.append(piece, count < 0 ? 0 : static_cast<std::size_t>(count));
  }
  return text;
}

[[noreturn]] void runReader(const std::string& fileName, int pipe) {
  limitProcess();
  sendAll(pipe, answerFor(fileName));
  // Nothing of this process may reach the console or the output of its parent.
  _exit(EXIT_SUCCESS);
}

/// A reading process, and the pipe on which it sends; none when the system refuses it.
struct ReadingProcess {
  pid_t id = -1;
  int pipe = -1;
};

ReadingProcess startReader(const std::string& fileName) {
  // A process that another thread splits off meanwhile would hold this pipe open.
  static std::mutex oneAtATime;
  const std::lock_guard lock(oneAtATime);
  int ends[2] = {};
  if (pipe2(ends, O_CLOEXEC) != 0) {
    return {};
  }
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    runReader(fileName, ends[1]);
  }
  close(ends[1]);
  return {child, ends[0]};
}

/// The answer of a reading process; empty when it came to harm.
std::string askReader(const std::string& fileName) {
  const ReadingProcess reader = startReader(fileName);
  std::string answer = receiveAll(reader.pipe);
  close(reader.pipe);
  int status = 0;
  while (reader.id > 0 && waitpid(reader.id, &status, 0) < 0 && errno == EINTR) {
  }
  return status == 0 ? answer : std::string();
}

std::vector<double> readSolutionTimes(const std::string& fileName) {
  const std::string answer = askReader(KESTparse::openedPath(fileName));
  if (answer.empty()) {
    throw OpenFileFailed(fileName);
  }
  if (answer.front() == faultFollows) {
    throw Exception(answer.substr(1));
  }
  std::vector<double> times((answer.size() - 1) / sizeof(double));
  // An empty vector has no place to copy to.
  if (!times.empty()) {
    std::memcpy(times.data(), answer.data() + 1, times.size() * sizeof(double));
  }
  return times;
}

}  // namespace

std::vector<double> getSolutionTimes(const std::string& fileName) {
  KESTparse::requireReading();
  auto& known = KESTparse::GlobalValues::instance().readFiles.solutionTimes;
  if (const auto it = known.find(fileName); it != known.end()) {
    return *it->second;
  }
  try {
    auto times = std::make_shared<const std::vector<double>>(readSolutionTimes(fileName));
    return *known.emplace(fileName, std::move(times)).first->second;
  } catch (const Exception& exception) {
    KESTparse::console().show(
        KESTparse::level::warning,
        "Determining the existing solution times failed: " + exception.getMessage());
    return {};
  }
}

}  // namespace h5io
