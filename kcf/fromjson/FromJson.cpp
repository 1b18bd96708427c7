#include "fromjson/FromJson.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "CommandFiles.h"
#include "JsonEmission.h"
#include "KESTparse/document/Document.h"
#include "KESTparse/document/Format.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "NamedFiles.h"
#include "OutputFile.h"
#include "Tell.h"
#include "check/Excerpt.h"
#include "fromjson/CommandFile.h"

namespace kcf {
namespace {

using KESTparse::ActiveValues;
using KESTparse::Diagnostic;
using KESTparse::Document;
using nlohmann::json;

json parsed(const std::string& path) {
  const std::string text = readCommandFile(path);
  try {
    return json::parse(text);
  } catch (const json::exception& fault) {
    // In front stands what the library calls it.
    const std::string_view told = fault.what();
    throw std::runtime_error(
        fmt::format("'{}' is no JSON: {}", path, told.substr(told.find("] ") + 2)));
  }
}

/// A command file that was written, and what is wrong with it as the origin of the document.
struct Attempt {
  std::string text;  ///< in the one style
  std::optional<DocumentFault> fault;
  std::vector<std::string> lost;  ///< pointers of what the command file makes of the document
  bool lacksFiles = false;        ///< whether a file that it names is not there
};

class Return {
 public:
  Return(json document, std::string directory)
      : document_(std::move(document)), directory_(std::move(directory)) {
    if (document_.is_object()) {
      document_.erase("$schema");
    }
  }

  /// The command file; a remark on it where the files that it names do not fit.
  std::string run(bool isMinimal, std::string& remark) {
    WritingOptions options;
    Attempt attempt = tryIt(options, true);
    if (attempt.fault) {
      // Strings that are read behind what names them are not looked at by all rules.
      options.hasGeometryBehind = true;
      Attempt other = tryIt(options, true);
      if (!other.fault) {
        attempt = std::move(other);
      } else {
        options.hasGeometryBehind = false;
        Attempt blind = tryIt(options, false);
        if (blind.lacksFiles) {
          remark = attempt.fault->what();
          attempt = std::move(blind);
        }
      }
    }
    if (attempt.fault) {
      throw DocumentFault(*attempt.fault);
    }
    return isMinimal ? minimal(std::move(attempt.text), options, remark.empty()) : attempt.text;
  }

 private:
  /// Leaves out what comes back by itself. What does not is written in the next round.
  std::string minimal(std::string whole, WritingOptions options, bool readsFiles) {
    options.isMinimal = true;
    while (true) {
      Attempt attempt = tryIt(options, readsFiles);
      if (!attempt.fault) {
        return attempt.text;
      }
      const std::size_t count = options.kept.size();
      options.kept.insert(attempt.lost.begin(), attempt.lost.end());
      if (options.kept.size() == count) {
        return whole;
      }
    }
  }

  Attempt tryIt(const WritingOptions& options, bool readsFiles) {
    const WrittenFile file = written(document_, schema_, options);
    Document read(file.text, schema_, {.directory = directory_, .readsFiles = readsFiles});
    Attempt attempt{KESTparse::formatted(read.syntax(), schema_), std::nullopt, {}};
    const std::set<std::string> files = namedFiles(read.root());
    attempt.lacksFiles = std::any_of(files.begin(), files.end(), [this](const std::string& name) {
      return !std::filesystem::exists(std::filesystem::path(directory_) / name);
    });
    const std::vector<Diagnostic>& told = read.check();
    const auto error = std::find_if(told.begin(), told.end(), [&](const Diagnostic& one) {
      // Rules miss the files, too.
      const bool isRule = one.code.find('/') != std::string::npos;
      return one.severity == KESTparse::Severity::error && (readsFiles || !isRule);
    });
    if (!read.converts().value_or(error == told.end())) {
      const KESTparse::NodeId node = read.syntax().nodeAt(error->at.at.begin);
      attempt.fault.emplace(node == KESTparse::noNode ? "" : file.pointers[node - 1],
                            harmless(error->message));
    }
    compare(read, attempt);
    return attempt;
  }

  /// Holds what comes of the command file against the document.
  void compare(Document& read, Attempt& attempt) {
    json back;
    {
      const ActiveValues active(read.values());
      back = KESTparse::documentOf(read.root());
    }
    for (const json& change : json::diff(document_, back)) {
      const std::string pointer = change["path"];
      attempt.lost.push_back(pointer);
      if (!attempt.fault) {
        attempt.fault.emplace(pointer, reasonOf(change));
      }
    }
  }

  [[nodiscard]] std::string reasonOf(const json& change) const {
    const auto shown = [](const json& value) {
      return value.is_structured() ? std::string(value.type_name()) : value.dump(-1, ' ', true);
    };
    if (change["op"] == "add") {
      return fmt::format("the key is missing; a setup has it, by default {}",
                         shown(change["value"]));
    }
    const json& own = document_.at(json::json_pointer(change["path"].get<std::string>()));
    if (change["op"] == "remove") {
      return fmt::format("no command file gives {} here", shown(own));
    }
    return fmt::format("no command file gives {} here; it would give {}", shown(own),
                       shown(change["value"]));
  }

  json document_;
  std::string directory_;
  KESTparse::KestrixInputRoot schema_;
};

int runFromJson(const Arguments& arguments) {
  const std::string input = arguments.value("DOCUMENT");
  const std::string output = arguments.value("--output", standardInput);
  const std::string& neighbour = output == standardInput ? input : output;
  const std::string directory =
      neighbour == standardInput ? "" : std::filesystem::path(neighbour).parent_path().string();
  Return back(parsed(input), directory);
  std::string remark;
  std::string text;
  try {
    text = back.run(arguments.has("--minimal"), remark);
  } catch (const DocumentFault& fault) {
    throw std::runtime_error(fmt::format("{}: {}: {}", shownPath(input),
                                         fault.pointer.empty() ? "/" : harmless(fault.pointer),
                                         fault.what()));
  }
  if (output == standardInput) {
    std::cout << text;
  } else {
    writeFile(output, text, arguments.has("--force"));
  }
  if (!remark.empty()) {
    tell("The files that the setup names could not be looked into with it: " + remark);
  }
  return status::done;
}

}  // namespace

Verb fromJsonVerb() {
  return {"from-json",
          "Write command files",
          "Make a command file of a document that the converter wrote",
          R"(The command file is in the one style and converts to the same document, which is
looked at before it is written. What a document does not carry is told in
comments: the tags of PROJECT but its title, and the block PARALLEL. A document
that is none, or that no command file gives, is refused with the JSON pointer of
what is wrong, and the status is 1.

Names of files count from the folder of FILE, or of DOCUMENT without -o. Where
these files are not there, the rules that look into them are left out.)",
          {{.name = "DOCUMENT",
            .help = "The document, or - for standard input",
            .required = true,
            .isPath = true},
           {.name = "--minimal", .help = "Leave out what equals its default"},
           {.name = "--output",
            .help = "Write this file; standard output when it is left out",
            .value = "FILE",
            .letter = 'o',
            .isPath = true},
           {.name = "--force", .help = "Replace the file of --output if it is there"}},
          runFromJson,
          {{"Get a command file back", "kcf from-json setup.json -o setup.kcf"},
           {"See what differs from the defaults", "kcf from-json --minimal setup.json"}}};
}

}  // namespace kcf
