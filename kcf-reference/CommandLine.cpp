#include "CommandLine.h"

#include <tclap/CmdLine.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "KESTparse/root/KestrixInputRoot.h"
#include "Manual.h"
#include "Places.h"
#include "Schema.h"
#include "Template.h"
#include "Vocabulary.h"

namespace KESTparse {
namespace {

constexpr int notFoundOrFailed = 1;
constexpr int wrongUsage = 2;
constexpr const char* programName = "kcf-reference";

/// `texts`, separated by commas.
std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) {
    all += (all.empty() ? "" : ", ") + text;
  }
  return all;
}

void printVocabulary(TCLAP::CmdLine& commandLine, std::vector<std::string>& arguments) {
  commandLine.parse(arguments);
  std::cout << vocabulary(KestrixInputRoot()).dump(2) << "\n";
}

void printSchema(TCLAP::CmdLine& commandLine, std::vector<std::string>& arguments) {
  commandLine.parse(arguments);
  std::cout << documentSchema(KestrixInputRoot()).dump(2) << "\n";
}

void makeManual(TCLAP::CmdLine& commandLine, std::vector<std::string>& arguments) {
  TCLAP::ValueArg<std::string> folder("o", "output", "folder for the pages; made if need be", true,
                                      "", "DIR", commandLine);
  commandLine.parse(arguments);
  writeManual(KestrixInputRoot(), folder.getValue());
}

void printTemplate(TCLAP::CmdLine& commandLine, std::vector<std::string>& arguments) {
  TCLAP::UnlabeledMultiArg<std::string> paths(
      "path", "path of a block, such as /DOMAIN/KESTPLANE_2D", true, "PATH", commandLine);
  commandLine.parse(arguments);
  const KestrixInputRoot root;
  std::vector<Place> places;
  for (const std::string& path : paths) {
    places.push_back(findPlace(root, path));
    if (places.back().block == nullptr) {
      throw std::runtime_error("there is no block '" + path + "'. Did you mean " +
                               joined(nearestPaths(root, path)) + "?");
    }
  }
  writeTemplate(root, places, std::cout);
}

struct Verb {
  std::string_view name;
  const char* help;
  void (*run)(TCLAP::CmdLine& commandLine, std::vector<std::string>& arguments);
};

constexpr Verb verbs[] = {
    {"json", "Prints the vocabulary: all blocks and tags with what holds for them.",
     printVocabulary},
    {"schema", "Prints a JSON Schema of the documents that the converter writes.", printSchema},
    {"manual", "Writes the reference manual as HTML pages that need no server.", makeManual},
    {"template", "Prints the skeleton of a command file with the named blocks.", printTemplate},
};

/// Takes the verb off the front of the arguments; the rest stands behind the name of the program.
const Verb& takeVerb(std::vector<std::string>& arguments) {
  std::string message = "Tells what may stand in a KCF command file. The verbs:\n";
  std::vector<std::string> names;
  for (const Verb& verb : verbs) {
    names.emplace_back(verb.name);
    message += "- " + std::string(verb.name) + ": " + verb.help + "\n";
  }
  message += "For the arguments of a verb: " + std::string(programName) + " VERB --help";
  TCLAP::CmdLine commandLine(message, ' ', "1.0");
  commandLine.setExceptionHandling(false);
  TCLAP::ValuesConstraint<std::string> known(names);
  TCLAP::UnlabeledValueArg<std::string> name("verb", "what to do", true, "", &known, commandLine);
  // What follows the verb is its own affair.
  std::vector<std::string> front{programName};
  if (arguments.size() > 1) {
    front.push_back(arguments[1]);
  }
  commandLine.parse(front);
  arguments.erase(arguments.begin());
  arguments.front() = std::string(programName) + " " + name.getValue();
  return *std::find_if(std::begin(verbs), std::end(verbs),
                       [&name](const Verb& verb) { return verb.name == name.getValue(); });
}

/// Runs the verb. `self` becomes what the user would type for it, as far as that is known.
void runVerb(std::vector<std::string>& arguments, std::string& self) {
  const Verb& verb = takeVerb(arguments);
  self = arguments.front();
  TCLAP::CmdLine commandLine(verb.help, ' ', "1.0");
  commandLine.setExceptionHandling(false);
  verb.run(commandLine, arguments);
}

}  // namespace

int runReference(std::vector<std::string> arguments) {
  int status = EXIT_SUCCESS;
  std::string self = programName;
  try {
    runVerb(arguments, self);
  } catch (const TCLAP::ExitException& exit) {
    status = exit.getExitStatus();
  } catch (const TCLAP::ArgException& fault) {
    std::cerr << programName << ": " << fault.error() << " " << fault.argId()
              << "\nFor help: " << self << " --help\n";
    status = wrongUsage;
  } catch (const std::exception& fault) {
    std::cerr << programName << ": " << fault.what() << "\n";
    status = notFoundOrFailed;
  }
  std::cout << std::flush;
  if (!std::cout) {
    std::cerr << programName << ": writing to standard output failed\n";
    status = notFoundOrFailed;
  }
  return status;
}

}  // namespace KESTparse
