#include "Help.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace kcf {
namespace {

/// What is explained, each with its explanation.
using Rows = std::vector<std::pair<std::string, std::string_view>>;

std::size_t widthOf(const Rows& rows) {
  std::size_t width = 0;
  for (const auto& [what, explanation] : rows) {
    width = std::max(width, what.size());
  }
  return width;
}

void writeRows(std::string_view heading, const Rows& rows, std::size_t width, std::string& text) {
  if (rows.empty()) {
    return;
  }
  text += fmt::format("\n{}:\n", heading);
  for (const auto& [what, explanation] : rows) {
    text += fmt::format("  {:<{}}  {}\n", what, width, explanation);
  }
}

/// The rows of the operands, or of the other options.
Rows rowsOf(const std::vector<Option>& options, bool areOperands) {
  Rows rows;
  for (const Option& option : options) {
    if (option.isOperand() == areOperands) {
      rows.emplace_back(spelling(option), option.help);
    }
  }
  return rows;
}

/// A usage line of at most 80 columns, the rest of it indented.
std::string wrapped(std::string_view usage) {
  constexpr std::size_t width = 80;
  constexpr std::string_view indent = "           ";
  std::string text;
  while (usage.size() > width) {
    // An option stays with its value.
    std::size_t end = usage.rfind(" [", width);
    if (end == std::string_view::npos || end == 0) {
      break;
    }
    text += fmt::format("{}\n{}", usage.substr(0, end), indent);
    usage.remove_prefix(end + 1);
  }
  return text + std::string(usage);
}

void writeExamples(const std::vector<Example>& examples, std::string& text) {
  for (const Example& example : examples) {
    text += fmt::format("{}  {}:\n    {}\n", &example == examples.data() ? "\nExamples:\n" : "",
                        example.purpose, example.command);
  }
}

}  // namespace

std::vector<const Verb*> shownVerbs(const Program& program) {
  std::vector<const Verb*> shown;
  for (const Verb& verb : program.verbs) {
    if (!verb.group.empty()) {
      shown.push_back(&verb);
    }
  }
  return shown;
}

std::string spelling(const Option& option) {
  if (option.isOperand()) {
    return std::string(option.name);
  }
  std::string text = option.letter == '\0' ? std::string() : fmt::format("-{}, ", option.letter);
  text += option.name;
  return option.value.empty() ? text : fmt::format("{} {}", text, option.value);
}

std::string synopsis(const std::vector<Option>& options) {
  std::string text;
  for (const bool isOperand : {false, true}) {
    for (const Option& option : options) {
      if (option.isOperand() != isOperand) {
        continue;
      }
      std::string one(option.name);
      if (!isOperand && !option.value.empty()) {
        one += fmt::format(" {}", option.value);
      }
      if (option.repeatable) {
        one += "...";
      }
      text += option.required ? fmt::format(" {}", one) : fmt::format(" [{}]", one);
    }
  }
  return text.empty() ? text : text.substr(1);
}

std::vector<Option> allOptions(const Verb& verb) {
  std::vector<Option> options = verb.options;
  options.push_back({.name = "--help", .help = "Print this help", .letter = 'h'});
  return options;
}

std::string helpOf(const Program& program) {
  std::string text = fmt::format("{0}.\n\nUsage: {1} VERB ...\n       {1} VERB --help\n",
                                 program.summary, program.name);
  const Rows options = rowsOf(program.options, false);
  std::size_t width = widthOf(options);
  std::vector<std::pair<std::string_view, Rows>> groups;
  for (const Verb* verb : shownVerbs(program)) {
    if (groups.empty() || groups.back().first != verb->group) {
      groups.emplace_back(verb->group, Rows());
    }
    groups.back().second.emplace_back(verb->name, verb->summary);
    width = std::max(width, verb->name.size());
  }
  for (const auto& [heading, rows] : groups) {
    writeRows(heading, rows, width, text);
  }
  writeRows("Options", options, width, text);
  return text;
}

std::string helpOf(const Program& program, const Verb& verb) {
  std::string text = fmt::format(
      "{}.\n\n{}\n", verb.summary,
      wrapped(fmt::format("Usage: {} {} {}", program.name, verb.name, synopsis(verb.options))));
  if (!verb.details.empty()) {
    text += fmt::format("\n{}\n", verb.details);
  }
  const std::vector<Option> options = allOptions(verb);
  const Rows operands = rowsOf(options, true);
  const Rows others = rowsOf(options, false);
  const std::size_t width = std::max(widthOf(operands), widthOf(others));
  writeRows("Arguments", operands, width, text);
  writeRows("Options", others, width, text);
  writeExamples(verb.examples, text);
  return text;
}

}  // namespace kcf
