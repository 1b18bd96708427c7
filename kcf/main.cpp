/// \file
/// Works with KCF command files.

#include <csignal>

#include "CommandLine.h"

int main(int argc, char** argv) {
  // A reader that goes away is a failed write, which is told.
  std::signal(SIGPIPE, SIG_IGN);
  return kcf::run({argv, argv + argc});
}
