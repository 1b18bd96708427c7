#include <fmt/format.h>

#include <iterator>
#include <sstream>

#include "Help.h"
#include "KESTparse/base/Conversions.h"
#include "installation/Installation.h"

namespace kcf {
namespace {

#ifndef KESTRIX_VERSION
#define KESTRIX_VERSION "unversioned"
#endif

/// A text as roff shows it: nothing in it is a request, and its dashes can be copied.
std::string roff(std::string_view text) {
  std::string escaped;
  bool isLineStart = true;
  for (const char c : text) {
    if (isLineStart && (c == '.' || c == '\'')) {
      escaped += "\\&";
    }
    escaped += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
    isLineStart = c == '\n';
  }
  return escaped;
}

/// Paragraphs are filled; indented lines stand as they are.
std::string paragraphs(std::string_view text) {
  std::string page;
  bool isLiteral = false;
  bool isParagraphDue = false;
  std::istringstream lines{std::string(text)};
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) {
      isParagraphDue = true;
      continue;
    }
    const bool isIndented = line.front() == ' ';
    if (isLiteral && !isIndented) {
      page += ".EE\n";
    }
    if (isParagraphDue || isIndented != isLiteral) {
      page += ".PP\n";
    }
    if (isIndented && !isLiteral) {
      page += ".EX\n";
    }
    page += roff(line) + "\n";
    isLiteral = isIndented;
    isParagraphDue = false;
  }
  return page + (isLiteral ? ".EE\n" : "");
}

class Page {
 public:
  Page(const std::string& name, const Program& program, std::string_view date,
       std::string_view summary) {
    add(".TH {} 1 {} \"{} {}\" \"KESTRIX command files\"\n", KESTparse::toUpper(name), date,
        program.name, KESTRIX_VERSION);
    add(".SH NAME\n{} \\- {}\n", roff(name), roff(summary));
  }

  void addSynopsis(std::string_view command, std::string_view arguments) {
    add(".SH SYNOPSIS\n.B {}\n{}\n", roff(command), roff(arguments));
  }

  void addDescription(std::string_view details) {
    if (!details.empty()) {
      add(".SH DESCRIPTION\n{}", paragraphs(details));
    }
  }

  void addOptions(const std::vector<Option>& options) {
    add(".SH OPTIONS\n");
    for (const Option& option : options) {
      addTerm(spelling(option), option.help);
      if (!option.choices.empty()) {
        add("One of {}.\n", roff(fmt::format("{}", fmt::join(option.choices, ", "))));
      }
    }
  }

  void addVerbs(const Program& program) {
    add(".SH VERBS\n");
    std::string_view group;
    for (const Verb* verb : shownVerbs(program)) {
      if (verb->group != group) {
        group = verb->group;
        add(".SS {}\n", roff(group));
      }
      addTerm(fmt::format("{}-{}(1)", program.name, verb->name), verb->summary);
    }
  }

  void addStatuses(const std::vector<Status>& statuses) {
    add(".SH EXIT STATUS\n");
    for (const Status& each : statuses) {
      addTerm(each.value, each.meaning);
    }
  }

  void addExamples(const std::vector<Example>& examples) {
    if (examples.empty()) {
      return;
    }
    add(".SH EXAMPLES\n");
    for (const Example& example : examples) {
      add("{}{}:\n.PP\n.EX\n    {}\n.EE\n", &example == examples.data() ? "" : ".PP\n",
          roff(example.purpose), roff(example.command));
    }
  }

  void addSeeAlso(const std::vector<std::string>& pages) {
    add(".SH SEE ALSO\n");
    for (const std::string& page : pages) {
      add(".BR {} (1){}\n", roff(page), &page == &pages.back() ? "" : ",");
    }
  }

  [[nodiscard]] std::string text() const { return text_; }

 private:
  template <typename... Values>
  void add(fmt::format_string<Values...> format, Values&&... values) {
    fmt::format_to(std::back_inserter(text_), format, std::forward<Values>(values)...);
  }

  void addTerm(std::string_view term, std::string_view explanation) {
    add(".TP\n.B {}\n{}.\n", roff(term), roff(explanation));
  }

  std::string text_;
};

}  // namespace

std::string manPage(const Program& program, std::string_view date) {
  Page page(std::string(program.name), program, date, program.summary);
  const bool hasVerbs = !program.verbs.empty();
  page.addSynopsis(program.name, hasVerbs ? "VERB [ARGUMENT...]" : synopsis(program.options));
  page.addDescription(program.details);
  if (hasVerbs) {
    page.addVerbs(program);
  }
  page.addOptions(program.options);
  page.addStatuses(program.statuses);
  page.addExamples(program.examples);
  page.addSeeAlso({program.name == "kcf" ? "main-converter" : "kcf"});
  return page.text();
}

std::string manPage(const Program& program, const Verb& verb, std::string_view date) {
  Page page(fmt::format("{}-{}", program.name, verb.name), program, date, verb.summary);
  page.addSynopsis(fmt::format("{} {}", program.name, verb.name), synopsis(verb.options));
  page.addDescription(verb.details);
  page.addOptions(allOptions(verb));
  page.addStatuses(program.statuses);
  page.addExamples(verb.examples);
  std::vector<std::string> others = {std::string(program.name)};
  for (const Verb* other : shownVerbs(program)) {
    if (other->group == verb.group && other->name != verb.name) {
      others.push_back(fmt::format("{}-{}", program.name, other->name));
    }
  }
  page.addSeeAlso(others);
  return page.text();
}

}  // namespace kcf
