#include "set/Set.h"

#include <fmt/format.h>

#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "CommandFiles.h"
#include "KESTparse/document/Edits.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "OutputFile.h"
#include "Tell.h"
#include "set/Changes.h"
#include "set/Study.h"

namespace kcf {
namespace {

namespace fs = std::filesystem;

KESTparse::TreeEditor editorOf(const std::string& path, const std::string& text,
                               const KESTparse::KestrixInputRoot& schema) {
  try {
    return {text, schema};
  } catch (const KESTparse::EditFault& fault) {
    throw std::runtime_error(
        fmt::format("{}: {}, which kcf check tells", shownPath(path), fault.what()));
  }
}

/// Puts the changed text where it was asked for.
void finish(const Arguments& arguments, const std::string& before, const std::string& after) {
  const std::string input = arguments.value("FILE");
  const std::string output = arguments.value("--output", input);
  if (output == standardInput) {
    std::cout << after;
  } else if (arguments.has("--output")) {
    writeFile(output, after, arguments.has("--force"));
  } else if (after != before) {
    replaceCommandFile(output, before, after);
  }
}

int change(const Arguments& arguments, const std::vector<Change>& changes,
           const std::string& before, KESTparse::TreeEditor editor, Judge& judge) {
  for (const auto& [path, value] : changes) {
    editor.set(path, value);
  }
  const std::string after = editor.text();
  KESTparse::Document document = judge.read(after);
  const std::vector<KESTparse::Diagnostic> broken = judge.broken(document);
  if (haveError(broken)) {
    tell("kcf: nothing was written, since this would be wrong:\n" + linesOf(broken, "  "));
    return status::failed;
  }
  finish(arguments, before, after);
  for (const std::string& path : editor.added()) {
    tell("added the block " + path);
  }
  tell(linesOf(broken, ""));
  return status::done;
}

int runSet(const Arguments& arguments) {
  std::vector<Change> changes;
  for (const std::string& argument : arguments.values("CHANGE")) {
    changes.push_back(changeOf(argument));
  }
  const bool isStudy = arguments.has("--table");
  if (isStudy != arguments.has("--into")) {
    throw UsageError{"--table and --into need each other"};
  }
  if (isStudy && arguments.has("--output")) {
    throw UsageError{"--into says where the command files of a table go; --output is for one"};
  }
  if (!isStudy && changes.empty() && !arguments.has("--delete")) {
    throw UsageError{"nothing is to be changed: PATH=VALUE, --delete or --table is required"};
  }
  const std::string input = arguments.value("FILE");
  const std::string directory =
      input == standardInput ? "" : fs::path(input).parent_path().string();
  const std::string before = readCommandFile(input);
  const KESTparse::KestrixInputRoot schema;
  KESTparse::TreeEditor editor = editorOf(input, before, schema);
  Judge judge(before, directory, schema);
  editor.remove(arguments.values("--delete"));
  if (!isStudy) {
    return change(arguments, changes, before, std::move(editor), judge);
  }
  StudyPlan plan;
  plan.directory = directory;
  plan.tableName = shownPath(arguments.value("--table"));
  plan.into = arguments.value("--into");
  plan.changes = std::move(changes);
  plan.copiesFiles = arguments.has("--copy");
  plan.mayReplace = arguments.has("--force");
  const std::string table = readCommandFile(arguments.value("--table"));
  try {
    plan.table = readTable(table);
  } catch (const std::runtime_error& fault) {
    throw std::runtime_error(fmt::format("{}: {}", plan.tableName, fault.what()));
  }
  return writeStudy(plan, editor, judge);
}

}  // namespace

Verb setVerb() {
  return {
      "set",
      "Work with command files",
      "Change tags by their paths, or make a command file for each row of a table",
      R"(A PATH names a tag and the blocks around it, such as FRICTION/type. Blocks at
its front may be left out as long as one place is meant. Of blocks that repeat,
the name or the number stands in brackets: KESTPLANE_2D[reach]/GEOMETRY/file,
BOUNDARY[2]/slope. A tag that is not there is added in the order of the
vocabulary, and so are the blocks that its path names. All else in the file
stays byte for byte.

What --delete names goes first, with its line. The result is checked as kcf
check does: if a value is refused, or the changes make another error, nothing is
written and the status is 1. Errors that were there before do not matter. Names
of files count from the folder of FILE.

With --table, a command file is made for each row. A column is a path, or a name
that stands in braces in the name of --into or in a change; {row} is the number
of the row. An empty cell leaves its tag as it is. The files that the setup names
are put beside it: links, or with --copy copies. Nothing is written if one row is
wrong.)",
      {{.name = "FILE",
        .help = "The command file, or - for standard input",
        .required = true,
        .isPath = true},
       {.name = "CHANGE", .help = "A tag and its value", .value = "PATH=VALUE", .repeatable = true},
       {.name = "--delete",
        .help = "A tag or a block to take away; may be given more than once",
        .value = "PATH",
        .repeatable = true},
       {.name = "--output",
        .help = "Write this file, or - for standard output, and leave FILE as it is",
        .value = "OUT",
        .letter = 'o',
        .isPath = true},
       {.name = "--table",
        .help = "A table of comma-separated values; its first line names the columns",
        .value = "CSV",
        .isPath = true},
       {.name = "--into",
        .help = "The command file of a row, such as runs/{run}/setup.kcf",
        .value = "NAME",
        .isPath = true},
       {.name = "--copy", .help = "With --table: copy the files beside, instead of linking them"},
       {.name = "--force", .help = "Replace files of --output and --into that are there"}},
      runSet,
      {{"Give a tag a value", "kcf set setup.kcf FRICTION/default_friction=32"},
       {"Keep the setup, and write another one without a block",
        "kcf set setup.kcf --delete VEGETATION -o bare.kcf"},
       {"Make a setup for each row of a table",
        "kcf set setup.kcf --table runs.csv --into 'runs/{run}/setup.kcf'"}}};
}

}  // namespace kcf
