/// \file
/// Tells the vocabulary of KCF command files.

#include <tclap/CmdLine.h>

#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "KESTparse/root/KestrixInputRoot.h"
#include "Schema.h"
#include "Template.h"
#include "Vocabulary.h"

namespace {

constexpr int notFoundOrFailed = 1;
constexpr int wrongUsage = 2;

int finish(std::ostream& out) {
  out << std::flush;
  if (!out) {
    std::cerr << "kcf-reference: writing to standard output failed\n";
    return notFoundOrFailed;
  }
  return EXIT_SUCCESS;
}

int printJson(TCLAP::CmdLine& commandLine, std::vector<std::string>& arguments) {
  commandLine.parse(arguments);
  std::cout << KESTparse::vocabulary(KESTparse::KestrixInputRoot()).dump(2) << "\n";
  return finish(std::cout);
}

int printSchema(TCLAP::CmdLine& commandLine, std::vector<std::string>& arguments) {
  commandLine.parse(arguments);
  std::cout << KESTparse::documentSchema(KESTparse::KestrixInputRoot()).dump(2) << "\n";
  return finish(std::cout);
}

int printTemplate(TCLAP::CmdLine& commandLine, std::vector<std::string>& arguments) {
  TCLAP::UnlabeledMultiArg<std::string> paths(
      "path", "path of a block, such as /DOMAIN/KESTPLANE_2D", true, "path");
  commandLine.add(paths);
  commandLine.parse(arguments);
  const KESTparse::KestrixInputRoot root;
  for (const std::string& path : paths) {
    if (KESTparse::findMaster(root, path) == nullptr) {
      std::cerr << "kcf-reference: there is no block '" << path << "'. Did you mean";
      const char* separator = " ";
      for (const std::string& known : KESTparse::nearestPaths(root, path)) {
        std::cerr << separator << known;
        separator = ", ";
      }
      std::cerr << "?\n";
      return notFoundOrFailed;
    }
  }
  KESTparse::writeTemplate(root, paths.getValue(), std::cout);
  return finish(std::cout);
}

struct Verb {
  const char* name;
  const char* help;
  int (*run)(TCLAP::CmdLine& commandLine, std::vector<std::string>& arguments);
};

constexpr Verb verbs[] = {
    {"json", "Prints the vocabulary: all blocks and tags with what holds for them.", printJson},
    {"schema", "Prints a JSON Schema of the documents that the converter writes.", printSchema},
    {"template", "Prints the skeleton of a command file with the named blocks.", printTemplate},
};

void printUsage(std::ostream& out) {
  out << "usage: kcf-reference VERB [--help] ...\n\n";
  for (const Verb& verb : verbs) {
    out << "  " << verb.name << std::string(10 - std::string_view(verb.name).size(), ' ')
        << verb.help << "\n";
  }
}

/// Runs a verb with the arguments behind it.
int run(const Verb& verb, std::vector<std::string> arguments) {
  TCLAP::CmdLine commandLine(verb.help, ' ', "1.0");
  commandLine.setExceptionHandling(false);
  try {
    return verb.run(commandLine, arguments);
  } catch (const TCLAP::ExitException& exit) {
    return exit.getExitStatus() == 0 ? EXIT_SUCCESS : wrongUsage;
  } catch (TCLAP::ArgException& fault) {
    std::cerr << "kcf-reference: " << fault.error() << " " << fault.argId() << "\n"
              << "For help: kcf-reference " << verb.name << " --help\n";
    return wrongUsage;
  } catch (const std::exception& fault) {
    std::cerr << "kcf-reference: " << fault.what() << "\n";
    return notFoundOrFailed;
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> arguments(argv, argv + argc);
  if (argc > 1 && (arguments[1] == "--help" || arguments[1] == "-h")) {
    printUsage(std::cout);
    return EXIT_SUCCESS;
  }
  for (const Verb& verb : verbs) {
    if (argc > 1 && arguments[1] == verb.name) {
      arguments.erase(arguments.begin());
      arguments.front() = std::string("kcf-reference ") + verb.name;
      return run(verb, std::move(arguments));
    }
  }
  printUsage(std::cerr);
  return wrongUsage;
}
