/// \file
/// What a verb of the program is described by. Command line, help, manual pages and completions are
/// made of these descriptions.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kcf {

/// The exit statuses that all verbs share.
namespace status {
inline constexpr int done = 0;
inline constexpr int failed = 1;      ///< something was found, not found, or could not be done
inline constexpr int wrongUsage = 2;  ///< the command line cannot be understood
}  // namespace status

/// An option of a verb, or its operand where the name begins with no dash.
struct Option {
  std::string_view name;        ///< such as "--output", or "PATH" of an operand
  std::string_view help;        ///< one line, without a full stop
  std::string_view value = {};  ///< what its value is called, such as "DIR"; empty for a switch
  char letter = '\0';           ///< the short form, if there is one
  bool required = false;
  bool repeatable = false;                              ///< may be given more than once
  std::vector<std::string_view> choices = {};           ///< the only values, if there are any
  bool isPath = false;                                  ///< completed by names of files
  std::vector<std::string> (*suggestions)() = nullptr;  ///< words that complete it, among others

  [[nodiscard]] bool isOperand() const { return !name.starts_with('-'); }
};

/// What was given on the command line, by the names of the options.
class Arguments {
 public:
  explicit Arguments(std::map<std::string, std::vector<std::string>, std::less<>> values)
      : values_(std::move(values)) {}

  /// Whether an option was given; of a switch, whether it is on.
  [[nodiscard]] bool has(std::string_view name) const { return values_.contains(name); }
  /// The value of an option, `otherwise` when it was not given.
  [[nodiscard]] std::string value(std::string_view name, std::string_view otherwise = {}) const {
    const auto it = values_.find(name);
    return it == values_.end() ? std::string(otherwise) : it->second.back();
  }
  /// All values of an option that may be given more than once.
  [[nodiscard]] std::vector<std::string> values(std::string_view name) const {
    const auto it = values_.find(name);
    return it == values_.end() ? std::vector<std::string>() : it->second;
  }

 private:
  std::map<std::string, std::vector<std::string>, std::less<>> values_;
};

/// A command line that shows how something is used, and what it is good for.
struct Example {
  std::string_view purpose;  ///< one line, without a full stop
  std::string_view command;
};

/// A verb. Its `run` returns the exit status; a `std::runtime_error` of it is told behind the name
/// of the program and ends with `status::failed`, a `UsageError` with `status::wrongUsage`.
struct Verb {
  std::string_view name;
  std::string_view group;    ///< the heading under which the help lists it; hidden when empty
  std::string_view summary;  ///< one line, without a full stop
  /// Paragraphs for its own help and its manual page, with lines of at most 80 columns; may be
  /// empty.
  std::string_view details;
  std::vector<Option> options;
  std::function<int(const Arguments&)> run;
  std::vector<Example> examples = {};
};

/// An exit status and when the program ends with it.
struct Status {
  std::string_view value;
  std::string_view meaning;  ///< a phrase without a full stop
};

/// A program as its help, its manual pages and its completions tell of it.
struct Program {
  std::string_view name;
  std::string_view summary;  ///< one line, without a full stop
  std::string_view details;  ///< as of a verb
  std::vector<Option> options;
  std::vector<Verb> verbs;  ///< group by group in the order of the help
  std::vector<Status> statuses;
  std::vector<Example> examples;
};

/// The arguments of a verb do not fit together.
struct UsageError {
  std::string message;
};

}  // namespace kcf
