/// \file
/// Converts a KCF command file to JSON.

#include <tclap/CmdLine.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "DocumentWriter.h"
#include "KESTparse/base/Assert.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace {

/// Reads the command file at `path` into a validated tree. Faults end the process.
std::unique_ptr<KESTparse::KestrixInputRoot> readSetup(const std::string& path) {
  auto root = std::make_unique<KESTparse::KestrixInputRoot>();
  KESTparse::InputParser parser(*root);
  std::ifstream in(path);
  parser.parse(in, false, path);
  const bool isValid = parser.validateSummary(std::cerr);
  ASSERT(isValid, "Parsing the input file failed.");
  return root;
}

/// Writes the document; a failure ends the process with an error that names `destination`.
void write(KESTparse::DocumentWriter& document, std::ostream& out, const std::string& destination) {
  document.write(out);
  out << std::endl;
  if (!out) {
    KESTparse::console().endWithError("Writing the JSON document to " + destination + " failed");
  }
}

/// Converts the command file `input` and ends the process.
/// \param output where the document goes; standard output when it cannot be opened.
[[noreturn]] void convert(const std::string& input, const std::string& output) {
  const std::unique_ptr<KESTparse::KestrixInputRoot> root = readSetup(input);
  // All that can fail but the writing comes before an existing file is emptied.
  KESTparse::DocumentWriter document(*root);

  std::ofstream file(output);
  if (file) {
    write(document, file, "'" + output + "'");
  } else {
    write(document, std::cout, "standard output");
  }
  // The memory goes back with the process: to destroy a large setup takes as long as to print it.
  std::exit(EXIT_SUCCESS);
}

}  // namespace

// A text that is no UTF-8 and a mesh whose node is no number end the process as an assertion does.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  // A reader that goes away and a file that may not grow are failed writes, which are told.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);

  TCLAP::CmdLine commandLine("KESTRIX KCF to JSON converter", ' ', "1.0");
  TCLAP::UnlabeledValueArg<std::string> input("kcf", "path to KCF file", true, "", "path");
  TCLAP::ValueArg<std::string> output("o", "output", "path to JSON file", false, "", "path");
  commandLine.add(input);
  commandLine.add(output);
  commandLine.parse(argc, argv);

  KESTparse::GlobalValues::instance().basePath = "./";
  try {
    convert(input.getValue(), output.getValue());
  } catch (const std::bad_alloc&) {
    KESTparse::console().endWithError("There is not enough memory to convert the input file");
  }
}
