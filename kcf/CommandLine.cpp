#include "CommandLine.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <string_view>

#include "Help.h"
#include "KESTparse/base/Suggestion.h"
#include "Licences.h"
#include "Tell.h"

namespace kcf {
namespace {

#ifndef KESTRIX_VERSION
#define KESTRIX_VERSION "unversioned"
#endif

/// What was given for the options of one verb.
struct Given {
  std::map<std::string_view, std::vector<std::string>> texts;
  std::map<std::string_view, bool> switches;

  [[nodiscard]] Arguments arguments() const {
    std::map<std::string, std::vector<std::string>, std::less<>> values;
    for (const auto& [name, given] : texts) {
      if (!given.empty()) {
        values.emplace(name, given);
      }
    }
    for (const auto& [name, isOn] : switches) {
      if (isOn) {
        values.try_emplace(std::string(name));
      }
    }
    return Arguments(std::move(values));
  }
};

void addOption(CLI::App& app, const Option& option, Given& given) {
  std::string name(option.name);
  if (option.letter != '\0') {
    name = std::string("-") + option.letter + "," + name;
  }
  if (!option.isOperand() && option.value.empty()) {
    app.add_flag(name, given.switches[option.name]);
    return;
  }
  CLI::Option* const added = app.add_option(name, given.texts[option.name]);
  added->required(option.required)->allow_extra_args(option.isOperand() && option.repeatable);
  if (option.repeatable) {
    const bool needsValue = option.required || !option.isOperand();
    added->expected(needsValue ? 1 : 0, CLI::detail::expected_max_vector_size);
  } else {
    added->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  }
  if (!option.choices.empty()) {
    added->check(
        CLI::IsMember(std::vector<std::string>(option.choices.begin(), option.choices.end())));
  }
}

/// What is said behind a word of the command line that nobody knows.
std::string suggestion(std::string_view written, const std::vector<std::string_view>& known) {
  const std::string_view nearest = KESTparse::nearestName(written, known);
  return nearest.empty() ? "" : ". Did you mean '" + std::string(nearest) + "'?";
}

/// Why the first argument that stands for a verb is none; empty when it is one.
std::string verbFault(const std::vector<std::string>& arguments) {
  if (arguments.size() < 2) {
    return "there is no verb";
  }
  const std::string& written = arguments[1];
  const std::vector<Verb>& verbs = program().verbs;
  if (written.starts_with('-') ||
      std::any_of(verbs.begin(), verbs.end(), [&](auto& verb) { return verb.name == written; })) {
    return {};
  }
  std::vector<std::string_view> names;
  for (const Verb* verb : shownVerbs(program())) {
    names.push_back(verb->name);
  }
  return "there is no verb '" + written + "'" + suggestion(written, names);
}

/// Why an argument that looks like an option of `verb` is none; empty when all are known.
std::string optionFault(const Verb& verb, const CLI::App& app) {
  std::vector<std::string_view> names{"--help"};
  for (const Option& option : verb.options) {
    if (!option.isOperand()) {
      names.push_back(option.name);
    }
  }
  for (const std::string& written : app.remaining()) {
    const std::string name = written.substr(0, written.find('='));
    if (name.size() > 1 && name.starts_with('-')) {
      return "there is no option '" + name + "'" + suggestion(name, names);
    }
    return "'" + written + "' is one argument too many";
  }
  return {};
}

bool takesPaths(const Verb& verb) {
  return std::any_of(verb.options.begin(), verb.options.end(), [](const Option& option) {
    return option.isOperand() && option.repeatable && option.isPath;
  });
}

/// Keeps a path as it is that the parser would take for a list: all of it stands in brackets.
void protectBrackets(std::string& path) {
  if (path.starts_with('[') && path.ends_with(']')) {
    path.insert(0, "./");
  }
}

/// Tells wrong usage of the program, or of a verb.
int refuse(const std::string& fault, std::string_view verb = {}) {
  const std::string self =
      std::string(program().name) + (verb.empty() ? "" : " " + std::string(verb));
  tell(fmt::format("{}: {}\nFor help: {} --help", program().name, fault, self));
  return status::wrongUsage;
}

int runVerb(const Verb& verb, const Given& given) {
  try {
    return verb.run(given.arguments());
  } catch (const UsageError& error) {
    return refuse(error.message, verb.name);
  } catch (const std::exception& fault) {
    tell(fmt::format("{}: {}", program().name, reasonOf(fault)));
    return status::failed;
  }
}

int parseAndRun(const std::vector<std::string>& arguments) {
  std::string fault = verbFault(arguments);
  if (!fault.empty()) {
    return refuse(fault);
  }
  CLI::App app;
  app.set_version_flag("--version", std::string(program().name) + " " + KESTRIX_VERSION);
  const CLI::Option* const wantsLicences = app.add_flag("--licences");
  app.require_subcommand(0, 1);
  const Verb* chosen = nullptr;
  CLI::App* chosenApp = nullptr;
  Given given;
  for (const Verb& verb : program().verbs) {
    CLI::App* const sub = app.add_subcommand(std::string(verb.name));
    if (arguments[1] != verb.name) {
      continue;
    }
    sub->allow_extras();
    for (const Option& option : verb.options) {
      addOption(*sub, option, given);
    }
    chosen = &verb;
    chosenApp = sub;
  }
  std::vector<std::string> kept = arguments;
  std::vector<const char*> words;
  words.reserve(kept.size());
  for (std::string& argument : kept) {
    if (chosen != nullptr && takesPaths(*chosen)) {
      protectBrackets(argument);
    }
    words.push_back(argument.c_str());
  }
  try {
    app.parse(static_cast<int>(words.size()), words.data());
  } catch (const CLI::CallForHelp&) {
    std::cout << (chosen == nullptr ? helpOf(program()) : helpOf(program(), *chosen));
    return status::done;
  } catch (const CLI::CallForVersion&) {
    std::cout << app.version() << "\n";
    return status::done;
  } catch (const CLI::ParseError& error) {
    fault = chosen == nullptr ? "" : optionFault(*chosen, *chosenApp);
    return refuse(fault.empty() ? error.what() : fault, chosen == nullptr ? "" : chosen->name);
  }
  if (wantsLicences->count() != 0) {
    std::cout << licences();
    return status::done;
  }
  if (chosen == nullptr) {
    return refuse("there is no verb");
  }
  fault = optionFault(*chosen, *chosenApp);
  return fault.empty() ? runVerb(*chosen, given) : refuse(fault, chosen->name);
}

}  // namespace

int run(const std::vector<std::string>& arguments) {
  const int result = parseAndRun(arguments);
  std::cout << std::flush;
  if (!std::cout) {
    tell(fmt::format("{}: writing to standard output failed", program().name));
    return result == status::wrongUsage ? result : status::failed;
  }
  return result;
}

}  // namespace kcf
