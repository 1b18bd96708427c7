#include <fmt/format.h>

#include <iterator>
#include <string>
#include <vector>

#include "Help.h"
#include "installation/Installation.h"

namespace kcf {
namespace {

/// What follows the name of the program, or a verb.
struct Level {
  std::string name;  ///< of the verb; empty where there is none
  std::vector<Option> options;
};

std::vector<Level> levelsOf(const Program& program) {
  std::vector<Level> levels;
  for (const Verb* verb : shownVerbs(program)) {
    levels.push_back({std::string(verb->name), allOptions(*verb)});
  }
  if (levels.empty()) {
    levels.push_back({"", program.options});
  }
  return levels;
}

/// In single quotes; `quote` is how the shell writes a single quote between them.
std::string quoted(std::string_view text, std::string_view quote) {
  std::string word = "'";
  for (const char c : text) {
    word += c == '\'' ? std::string(quote) : std::string(1, c);
  }
  return word + "'";
}

/// The words that complete the value of an option, blank by blank.
std::string wordsOf(const Option& option) {
  std::string words = fmt::format("{}", fmt::join(option.choices, " "));
  if (option.suggestions != nullptr) {
    words += fmt::format("{}{}", words.empty() ? "" : " ", fmt::join(option.suggestions(), " "));
  }
  return words;
}

/// Adds to a text that is written line by line.
template <typename... Values>
void add(std::string& text, fmt::format_string<Values...> format, Values&&... values) {
  fmt::format_to(std::back_inserter(text), format, std::forward<Values>(values)...);
}

// ---- bash ----

std::string bashValues(const Option& option) {
  if (option.isPath) {
    return "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$cur\")";
  }
  return fmt::format(R"(COMPREPLY=($(compgen -W "{}" -- "$cur")))", wordsOf(option));
}

void addBashLevel(const Level& level, std::string& text) {
  std::string names;
  std::string operand;
  add(text, "      case $prev in\n");
  for (const Option& option : level.options) {
    if (option.isOperand()) {
      operand = bashValues(option);
      continue;
    }
    names += (names.empty() ? "" : " ") + std::string(option.name);
    if (!option.value.empty()) {
      add(text, "        {}{}) {}; return ;;\n",
          option.letter == '\0' ? "" : fmt::format("-{}|", option.letter), option.name,
          bashValues(option));
    }
  }
  add(text,
      "      esac\n      if [[ $cur == -* ]]; then\n"
      "        COMPREPLY=($(compgen -W \"{}\" -- \"$cur\"))\n",
      names);
  if (!operand.empty()) {
    add(text, "      else\n        {}\n", operand);
  }
  add(text, "      fi\n");
}

// ---- zsh ----

constexpr std::string_view zshQuote = "'\\''";

/// A text within a specification, where brackets and colons have a meaning.
std::string zshEscaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    escaped += (c == '[' || c == ']' || c == ':' ? "\\" : "") + std::string(1, c);
  }
  return escaped;
}

std::string zshAction(const Option& option) {
  const std::string words = wordsOf(option);
  return option.isPath ? "_files" : words.empty() ? " " : "(" + words + ")";
}

void addZshLevel(const Level& level, std::string_view indent, std::string& text) {
  add(text, "{}_arguments -s", indent);
  for (const Option& option : level.options) {
    std::string before;
    std::string after;
    if (option.isOperand()) {
      before = fmt::format("{}:{}:{}", option.repeatable ? "*" : "", zshEscaped(option.value),
                           zshAction(option));
      add(text, " \\\n{}  {}", indent, quoted(before, zshQuote));
      continue;
    }
    after = fmt::format("[{}]", zshEscaped(option.help));
    if (!option.value.empty()) {
      after += fmt::format(":{}:{}", zshEscaped(option.value), zshAction(option));
    }
    const std::string_view sign = option.value.empty() ? "" : "=";
    if (option.letter == '\0') {
      add(text, " \\\n{}  {}", indent,
          quoted(fmt::format("{}{}{}{}", option.repeatable ? "*" : "", option.name, sign, after),
                 zshQuote));
    } else {
      add(text, " \\\n{}  {}{{-{}{},{}{}}}{}", indent,
          option.repeatable ? "'*'" : fmt::format("'(-{} {})'", option.letter, option.name),
          option.letter, option.value.empty() ? "" : "+", option.name, sign,
          quoted(after, zshQuote));
    }
  }
  add(text, "\n");
}

// ---- fish ----

constexpr std::string_view fishQuote = "\\'";

std::string fishValues(const Option& option) {
  return option.isPath ? " -F" : fmt::format(" -f -a {}", quoted(wordsOf(option), fishQuote));
}

}  // namespace

std::string bashCompletion(const Program& program) {
  std::string text;
  const std::string function = program.name == "kcf" ? "_kcf" : "_main_converter";
  add(text,
      "# Completions of {0} for bash.\n{1}() {{\n"
      "  local cur=${{COMP_WORDS[COMP_CWORD]}} prev=${{COMP_WORDS[COMP_CWORD - 1]}}\n"
      "  # --option=value comes as three words.\n"
      "  if [[ $cur == = ]]; then\n    cur=\n"
      "  elif [[ $prev == = ]]; then\n    prev=${{COMP_WORDS[COMP_CWORD - 2]}}\n  fi\n"
      "  COMPREPLY=()\n",
      program.name, function);
  const std::vector<Level> levels = levelsOf(program);
  std::string words;
  for (const Level& level : levels) {
    words += level.name + " ";
  }
  if (program.verbs.empty()) {
    add(text, "  case 1 in\n    *)\n");
    addBashLevel(levels.front(), text);
    add(text, "      ;;\n  esac\n");
  } else {
    for (const Option& option : program.options) {
      words += std::string(option.name) + " ";
    }
    words.pop_back();
    add(text,
        "  if ((COMP_CWORD == 1)); then\n"
        "    COMPREPLY=($(compgen -W \"{}\" -- \"$cur\"))\n    return\n  fi\n"
        "  case ${{COMP_WORDS[1]}} in\n",
        words);
    for (const Level& level : levels) {
      add(text, "    {})\n", level.name);
      addBashLevel(level, text);
      add(text, "      ;;\n");
    }
    add(text, "  esac\n");
  }
  add(text, "}}\ncomplete -F {} {}\n", function, program.name);
  return text;
}

std::string zshCompletion(const Program& program) {
  std::string text = fmt::format("#compdef {}\n", program.name);
  if (program.verbs.empty()) {
    addZshLevel(levelsOf(program).front(), "", text);
    return text;
  }
  add(text, "if ((CURRENT == 2)); then\n  local -a verbs=(\n");
  for (const Verb* verb : shownVerbs(program)) {
    add(text, "    {}\n",
        quoted(fmt::format("{}:{}", verb->name, zshEscaped(verb->summary)), zshQuote));
  }
  add(text, "  )\n  _describe -t verbs verb verbs\n");
  addZshLevel({"", program.options}, "  ", text);
  add(text, "  return\nfi\nlocal verb=$words[2]\nshift words\n((CURRENT--))\ncase $verb in\n");
  for (const Level& level : levelsOf(program)) {
    add(text, "  {})\n", level.name);
    addZshLevel(level, "    ", text);
    add(text, "    ;;\n");
  }
  add(text, "esac\n");
  return text;
}

std::string fishCompletion(const Program& program) {
  std::string text = fmt::format("complete -c {} -f\n", program.name);
  const auto addOptions = [&](const std::vector<Option>& options, const std::string& condition) {
    for (const Option& option : options) {
      add(text, "complete -c {}{}", program.name, condition);
      if (option.isOperand()) {
        add(text, "{}\n", fishValues(option));
        continue;
      }
      if (option.letter != '\0') {
        add(text, " -s {}", option.letter);
      }
      add(text, " -l {} -d {}", option.name.substr(2), quoted(option.help, fishQuote));
      add(text, "{}\n", option.value.empty() ? "" : " -r" + fishValues(option));
    }
  };
  if (program.verbs.empty()) {
    addOptions(program.options, "");
    return text;
  }
  for (const Verb* verb : shownVerbs(program)) {
    add(text, "complete -c {} -n __fish_use_subcommand -a {} -d {}\n", program.name, verb->name,
        quoted(verb->summary, fishQuote));
  }
  addOptions(program.options, " -n __fish_use_subcommand");
  for (const Level& level : levelsOf(program)) {
    addOptions(level.options, " -n '__fish_seen_subcommand_from " + level.name + "'");
  }
  return text;
}

}  // namespace kcf
