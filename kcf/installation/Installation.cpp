#include "installation/Installation.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "CommandLine.h"
#include "Help.h"

namespace kcf {
namespace {

void writeFile(const std::filesystem::path& path, const std::string& content) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary);
  out << content << std::flush;
  if (!out) {
    throw std::runtime_error("writing '" + path.string() + "' failed");
  }
}

void writeFiles(const std::filesystem::path& folder, const std::string& date) {
  for (const Program* each : {&program(), &converter()}) {
    const std::string name(each->name);
    writeFile(folder / "man" / (name + ".1"), manPage(*each, date));
    for (const Verb* verb : shownVerbs(*each)) {
      writeFile(folder / "man" / (name + "-" + std::string(verb->name) + ".1"),
                manPage(*each, *verb, date));
    }
    writeFile(folder / "bash" / name, bashCompletion(*each));
    writeFile(folder / "zsh" / ("_" + name), zshCompletion(*each));
    writeFile(folder / "fish" / (name + ".fish"), fishCompletion(*each));
  }
}

}  // namespace

const Program& converter() {
  static const Program self = {
      .name = "main-converter",
      .summary = "Convert a KCF command file to a JSON document",
      .details =
          R"(Reads the setup of a simulation, fills in defaults, checks it against the
vocabulary and writes it as one JSON document. Reports go to standard error.

Names of files in the command file are relative to the folder in which the
converter runs. What may stand in a command file is told by kcf(1).)",
      .options = {{.name = "--output",
                   .help = "Write the document to this file and not to standard output",
                   .value = "PATH",
                   .letter = 'o',
                   .isPath = true},
                  {.name = "--help", .help = "Print a help", .letter = 'h'},
                  {.name = "--version", .help = "Print the version"},
                  {.name = "--ignore_rest", .help = "Take what follows as no option; also --"},
                  {.name = "PATH",
                   .help = "The command file",
                   .value = "PATH",
                   .required = true,
                   .isPath = true}},
      .verbs = {},
      .statuses = {{"0", "A document was written"},
                   {"1", "Reading ended at a fault of syntax or of a value, or writing failed"},
                   {"134",
                    "The validation found faults, all of which are listed; the process aborts"}},
      .examples = {{"Look at the document", "main-converter setup.kcf"},
                   {"Keep it in a file", "main-converter -o setup.json setup.kcf"}}};
  return self;
}

Verb installationVerb() {
  return {"installation-files",
          "",
          "Write the manual pages and the completions that are installed",
          "",
          {{.name = "--output",
            .help = "Folder for the files; made if need be",
            .value = "DIR",
            .required = true,
            .isPath = true},
           {.name = "--date",
            .help = "Date that the manual pages bear, as year-month-day",
            .value = "DATE",
            .required = true}},
          [](const Arguments& arguments) {
            writeFiles(arguments.value("--output"), arguments.value("--date"));
            return status::done;
          }};
}

}  // namespace kcf
