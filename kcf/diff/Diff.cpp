#include "diff/Diff.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CommandFiles.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "Tell.h"
#include "check/Excerpt.h"
#include "diff/Comparison.h"

namespace kcf {
namespace {

using KESTparse::Diagnostic;
using KESTparse::Document;
using Kind = Difference::Kind;

/// The status where it cannot be told whether the files differ.
constexpr int cannotTell = 2;

/// A file cannot be compared.
struct Unreadable {
  std::string fault;
};

/// Whether a diagnostic says that something is not there or does not fit, and not that the text has
/// no meaning.
bool leavesMeaning(const Diagnostic& told) {
  constexpr std::array<std::string_view, 4> gaps{
      KESTparse::code::missingBlock, KESTparse::code::missingTag, KESTparse::code::exclusiveTags,
      KESTparse::code::stopped};
  const bool isRule = told.code.find('/') != std::string::npos;
  return told.severity != KESTparse::Severity::error || isRule ||
         told.origin == KESTparse::Origin::checker ||
         std::find(gaps.begin(), gaps.end(), told.code) != gaps.end();
}

/// Refuses a document of which not all could be read.
void requireWhole(const std::string& name, Document& document) {
  const std::vector<Diagnostic>& all = document.check();
  const auto told = std::find_if_not(all.begin(), all.end(), leavesMeaning);
  if (told != all.end()) {
    const KESTparse::LineColumn at = document.lines().at(told->at.at.begin);
    throw Unreadable{
        fmt::format("{}:{}:{}: {}; kcf check tells all", name, at.line, at.column, told->message)};
  }
}

std::unique_ptr<Document> read(const std::string& path, const KESTparse::KestrixInputRoot& schema) {
  try {
    auto document = std::make_unique<Document>(readCommandFile(path), schema,
                                               KESTparse::DocumentOptions{.readsFiles = false});
    requireWhole(shownPath(path), *document);
    return document;
  } catch (const std::exception& fault) {
    throw Unreadable{reasonOf(fault)};
  }
}

std::string directoryOf(const std::string& path) {
  return path == standardInput ? "" : std::filesystem::path(path).parent_path().string();
}

/// A value that is not too long for a line, with the sign of a default.
std::string shown(const std::optional<ComparedValue>& value) {
  constexpr std::size_t longest = 60;
  if (!value) {
    return "(none)";
  }
  const std::string& text = value->text;
  return excerptOf(text, {0, 0}, longest).text + (value->isDefault ? " (default)" : "");
}

std::string lineOf(const Difference& difference) {
  constexpr std::string_view signs = "~+-~";
  std::string line = fmt::format("{} {}", signs[static_cast<std::size_t>(difference.kind)],
                                 harmless(difference.path));
  if (difference.isBlock) {
    return line + (difference.kind == Kind::reordered ? ": the order of these blocks" : "") + "\n";
  }
  line += ": ";
  switch (difference.kind) {
    case Kind::added:
      line += shown(difference.after);
      break;
    case Kind::removed:
      line += shown(difference.before);
      break;
    default:
      line += difference.before->json == difference.after->json
                  ? shown(difference.after)
                  : shown(difference.before) + " -> " + shown(difference.after);
  }
  line += difference.unit.empty() ? "" : " " + difference.unit;
  line += difference.item > 0 ? fmt::format(", from item {} on", difference.item) : "";
  line += difference.isContents ? ", which holds something else" : "";
  return line + "\n";
}

nlohmann::ordered_json jsonOf(const Difference& difference) {
  constexpr std::string_view kinds[] = {"changed", "added", "removed", "reordered"};
  const auto value = [](const std::optional<ComparedValue>& given) {
    return given ? nlohmann::ordered_json::parse(given->json) : nlohmann::ordered_json();
  };
  nlohmann::ordered_json told{{"kind", kinds[static_cast<std::size_t>(difference.kind)]},
                              {"what", difference.isBlock ? "block" : "tag"},
                              {"path", difference.path}};
  if (!difference.isBlock) {
    told["old"] = value(difference.before);
    told["new"] = value(difference.after);
    told["oldIsDefault"] = difference.before && difference.before->isDefault;
    told["newIsDefault"] = difference.after && difference.after->isDefault;
    told["unit"] = difference.unit;
    if (difference.isFile) {
      told["contentsDiffer"] = difference.isContents;
    }
  }
  return told;
}

int runDiff(const Arguments& arguments) {
  const std::string before = arguments.value("OLD");
  const std::string after = arguments.value("NEW");
  if (before == standardInput && after == standardInput) {
    throw UsageError{"only one of the files can be standard input"};
  }
  const KESTparse::KestrixInputRoot schema;
  std::unique_ptr<Document> old;
  std::unique_ptr<Document> fresh;
  try {
    old = read(before, schema);
    fresh = read(after, schema);
  } catch (const Unreadable& unreadable) {
    tell("kcf: " + unreadable.fault);
    return cannotTell;
  }
  const std::vector<Difference> differences =
      differencesOf({old.get(), directoryOf(before)}, {fresh.get(), directoryOf(after)});
  if (arguments.value("--format", "text") == "json") {
    nlohmann::ordered_json told{{"old", before}, {"new", after}};
    told["differences"] = nlohmann::ordered_json::array();
    for (const Difference& difference : differences) {
      told["differences"].push_back(jsonOf(difference));
    }
    std::cout << told.dump(1, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
  } else {
    for (const Difference& difference : differences) {
      std::cout << lineOf(difference);
    }
  }
  return differences.empty() ? status::done : status::failed;
}

}  // namespace

Verb diffVerb() {
  return {"diff",
          "Work with command files",
          "Tell what differs in meaning between two command files",
          R"(One line tells each change: "~" a value, with the old one, the new one and the
unit, "+" what is only in NEW, "-" what is only in OLD. Blocks belong together
by their names, and those without a name by what they hold and their order.
Numbers count by value, and a default as if it were given. Files that both name
are the same if they hold the same; names count from the folder of each file.
Comments, white space and the order of blocks that have names mean nothing.

The status is 0 when nothing differs, 1 when something does, and 2 when it
cannot be told, since a file cannot be read or not all of it is understood.)",
          {{.name = "OLD",
            .help = "A command file, or - for standard input",
            .required = true,
            .isPath = true},
           {.name = "NEW", .help = "Another one", .required = true, .isPath = true},
           {.name = "--format",
            .help = "How to tell it",
            .value = "FORM",
            .choices = {"text", "json"}}},
          runDiff,
          {{"See what a change means", "kcf diff setup.kcf changed.kcf"},
           {"Compare with the last commit", "git show HEAD:./setup.kcf | kcf diff - setup.kcf"}}};
}

}  // namespace kcf
