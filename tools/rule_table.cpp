/// \file
/// Writes a table of the rules of all block classes, which it reads in their sources.
///
///     rule-table OUTPUT SOURCE...
///
/// A rule is what stands in `error(...)`, `warning(...)` or `report(...)`: a group of its name, its
/// sentence and its help, and behind it the text of the converter. Rules of functions that classes
/// share belong to all classes that call them, as do those that a class tells to another block;
/// those of a base belong to its derived classes, too.

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

struct Token {
  enum class Kind { word, literal, sign };
  Kind kind;
  std::string text;  // of a literal with its quotes

  [[nodiscard]] bool is(std::string_view sign) const {
    return kind != Kind::literal && text == sign;
  }
};

using Tokens = std::vector<Token>;

bool isWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// The end of a literal whose opening quote is at `at`.
std::size_t endOfLiteral(std::string_view text, std::size_t at) {
  const char quote = text[at];
  for (++at; at < text.size() && text[at] != quote; ++at) {
    at += text[at] == '\\' ? 1 : 0;
  }
  return at + 1;
}

std::size_t endOfRawLiteral(std::string_view text, std::size_t at) {
  const std::size_t open = text.find('(', at);
  const std::string close = ")" + std::string(text.substr(at + 1, open - at - 1)) + "\"";
  return text.find(close, open) + close.size();
}

/// The tokens of a source without its comments and directives.
Tokens tokensOf(std::string_view text) {
  Tokens tokens;
  bool isLineStart = true;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (std::isspace(static_cast<unsigned char>(c)) != 0) {
      isLineStart = isLineStart || c == '\n';
      ++at;
    } else if (text.substr(at, 2) == "//" || (c == '#' && isLineStart)) {
      at = std::min(text.find('\n', at), text.size());
    } else if (text.substr(at, 2) == "/*") {
      at = text.find("*/", at) + 2;
    } else {
      isLineStart = false;
      std::size_t end = at + 1;
      Token::Kind kind = Token::Kind::sign;
      if (text.substr(at, 2) == "R\"") {
        kind = Token::Kind::literal;
        end = endOfRawLiteral(text, at + 1);
      } else if (c == '"' || c == '\'') {
        kind = Token::Kind::literal;
        end = endOfLiteral(text, at);
      } else if (isWordCharacter(c)) {
        kind = Token::Kind::word;
        const bool isNumber = std::isdigit(static_cast<unsigned char>(c)) != 0;
        while (end < text.size() &&
               (isWordCharacter(text[end]) || (isNumber && text[end] == '\''))) {
          ++end;
        }
      }
      tokens.push_back({kind, std::string(text.substr(at, end - at))});
      at = end;
    }
  }
  return tokens;
}

/// The texts of a rule, as literals of the source.
struct Rule {
  std::string name;
  std::string severity;
  std::string members;
  std::string sentence;
  std::string help;
  std::string text;
  bool isForCallers = false;  // told to a block that the caller gives
};

/// What a function holds: its rules, and the functions that it calls.
struct Function {
  std::string blockClass;  // empty of a free one
  std::vector<Rule> rules;
  std::set<std::string> calls;
  std::string forwardedText;  // of a report whose rule the caller gives
};

/// All that the sources hold.
struct Sources {
  std::multimap<std::string, Function> functions;   // by name
  std::multimap<std::string, std::string> derived;  // classes by their base
};

/// Reads the functions of one source.
class Reader {
 public:
  Reader(const Tokens& tokens, Sources& sources) : tokens_(tokens), sources_(sources) {}

  void read() { readScope(0, {}); }

 private:
  [[nodiscard]] const Token& at(std::size_t place) const {
    static const Token none{Token::Kind::sign, {}};
    return place < tokens_.size() ? tokens_[place] : none;
  }

  /// Reads declarations up to the brace that closes the scope; returns the place behind it.
  std::size_t readScope(std::size_t place, const std::string& blockClass) {
    for (std::size_t head = place; place < tokens_.size(); ++place) {
      if (at(place).is(";") || (at(place).is(":") && at(place - 1).kind == Token::Kind::word)) {
        head = at(place).is(";") || isAccess(place - 1) ? place + 1 : head;
      } else if (at(place).is("}")) {
        return place + 1;
      } else if (at(place).is("{")) {
        place = readBraces(head, place, blockClass) - 1;
        head = place + 1;
      }
    }
    return place;
  }

  [[nodiscard]] bool isAccess(std::size_t place) const {
    return at(place).is("public") || at(place).is("private") || at(place).is("protected");
  }

  /// Reads what stands in the braces at `open` behind the declaration at `head`.
  std::size_t readBraces(std::size_t head, std::size_t open, const std::string& blockClass) {
    std::size_t call = head;
    while (call < open && !at(call).is("(")) {
      if (at(call).is("namespace")) {
        return readScope(open + 1, blockClass);
      }
      if (at(call).is("class") || at(call).is("struct")) {
        const bool isParameter = call > 0 && (at(call - 1).is("<") || at(call - 1).is(","));
        if (!isParameter) {
          noteBase(call + 1, open);
          return readScope(open + 1, at(call + 1).text);
        }
      }
      ++call;
    }
    Function function;
    function.blockClass = blockClass;
    if (call < open && call > head + 1 && at(call - 2).is(":")) {
      function.blockClass = at(call - 4).text;
    }
    const std::string name = call < open && call > head ? at(call - 1).text : "";
    const std::size_t end = readBody(open + 1, function);
    sources_.functions.emplace(name, std::move(function));
    return end;
  }

  /// Notes the class that stands in `SchemaBlock<Class, Base>`.
  void noteBase(std::size_t name, std::size_t open) {
    for (std::size_t place = name; place + 4 < open; ++place) {
      if (at(place).is("SchemaBlock") && at(place + 3).is(",")) {
        sources_.derived.emplace(at(place + 4).text, at(name).text);
      }
    }
  }

  /// Reads the body of a function; returns the place behind the brace that closes it.
  std::size_t readBody(std::size_t place, Function& function) {
    std::vector<std::size_t> calls;
    std::size_t depth = 1;
    for (; place < tokens_.size() && depth > 0; ++place) {
      if (at(place).is("(")) {
        calls.push_back(place);
        function.calls.insert(at(callee(place)).text);
      } else if (at(place).is(")") && !calls.empty()) {
        noteForwarded(calls.back(), place, function);
        calls.pop_back();
      } else if (at(place).is("}")) {
        --depth;
      } else if (at(place).is("{")) {
        ++depth;
        if (!calls.empty()) {
          readRule(place, calls.back(), function);
        }
      }
    }
    return place;
  }

  /// The place of what is called by the parenthesis at `open`.
  [[nodiscard]] std::size_t callee(std::size_t open) const {
    std::size_t place = open - 1;
    if (at(place).is(">")) {
      for (std::size_t depth = 0; place > 0; --place) {
        depth += at(place).is(">") ? 1 : 0;
        depth -= at(place).is("<") ? 1 : 0;
        if (depth == 0) {
          break;
        }
      }
      --place;
    }
    return place;
  }

  /// Reads the literals at `place` that the compiler joins.
  [[nodiscard]] std::string joined(std::size_t& place) const {
    std::string text;
    while (at(place).kind == Token::Kind::literal) {
      text += (text.empty() ? "" : " ") + at(place++).text;
    }
    return text;
  }

  [[nodiscard]] static bool isRuleName(const std::string& literal) {
    return literal.size() > 2 && literal.front() == '"' &&
           std::all_of(literal.begin() + 1, literal.end() - 1, [](char c) {
             return c == '-' || (std::isalnum(static_cast<unsigned char>(c)) != 0 &&
                                 std::isupper(static_cast<unsigned char>(c)) == 0);
           });
  }

  void readRule(std::size_t open, std::size_t call, Function& function) {
    std::size_t place = open + 1;
    Rule rule;
    rule.name = joined(place);
    if (!isRuleName(rule.name) || !at(place++).is(",")) {
      return;
    }
    rule.sentence = joined(place);
    if (!at(place++).is(",")) {
      return;
    }
    rule.help = joined(place);
    if (rule.sentence.empty() || rule.help.empty() || !at(place).is("}")) {
      return;
    }
    const std::string& called = at(callee(call)).text;
    const bool isKnown = called == "error" || called == "warning" || called == "report";
    rule.severity = called == "report" ? severityIn(call, open) : called;
    rule.members = membersIn(callee(call), open);
    rule.isForCallers = !function.blockClass.empty() && isToldToOther(call);
    if (isKnown && at(++place).is(",")) {
      rule.text = joined(++place);
    }
    if (!isKnown) {
      rule.severity.clear();
      rule.text = called;
    }
    function.rules.push_back(std::move(rule));
  }

  /// Whether the call at `open` begins with a block, or a severity and a block, that is not this
  /// one.
  [[nodiscard]] bool isToldToOther(std::size_t open) const {
    const std::size_t block = open + (at(open + 1).is("Severity") ? 6 : 1);
    return at(block).kind == Token::Kind::word && at(block + 1).is(",");
  }

  [[nodiscard]] std::string severityIn(std::size_t begin, std::size_t end) const {
    for (std::size_t place = begin; place + 3 < end; ++place) {
      if (at(place).is("Severity")) {
        return at(place + 3).text;
      }
    }
    return "error";
  }

  /// The members of the class that are named, separated by blanks.
  [[nodiscard]] std::string membersIn(std::size_t begin, std::size_t end) const {
    std::string members;
    for (std::size_t place = begin; place + 4 < end; ++place) {
      if (at(place).is("&") && at(place + 1).is("Self")) {
        members += (members.empty() ? "" : " ") + at(place + 4).text;
      }
    }
    return members;
  }

  void noteForwarded(std::size_t open, std::size_t close, Function& function) const {
    if (!at(callee(open)).is("report")) {
      return;
    }
    for (std::size_t place = open; place + 2 < close; ++place) {
      if (at(place).is("rule") && at(place + 1).is(",")) {
        place += 2;
        function.forwardedText = joined(place);
      }
    }
  }

  const Tokens& tokens_;
  Sources& sources_;
};

/// Collects the rules of classes.
class Table {
 public:
  explicit Table(const Sources& sources) : sources_(sources) {
    for (const auto& [name, function] : sources.functions) {
      if (!function.blockClass.empty()) {
        std::set<std::string> seen;
        collect(function.blockClass, function, seen);
      }
    }
  }

  void write(std::ostream& out) const {
    out << "// Made by tools/rule_table.cpp of the rules in the block classes.\n"
           "#include \"KESTparse/vocabulary/RuleTable.h\"\n\nnamespace KESTparse {\n\n"
           "std::span<const RuleFacts> allRules() {\n  static constexpr RuleFacts rules[] = {\n";
    for (const auto& [key, rules] : rules_) {
      for (const Rule& rule : rules) {
        out << "    {\"" << key.first << "\", " << rule.name << ", Severity::" << rule.severity
            << ", \"" << rule.members << "\",\n     " << rule.sentence << ",\n     " << rule.help
            << ",\n     " << (rule.text.empty() ? "\"\"" : rule.text) << "},\n";
      }
    }
    out << "  };\n  return rules;\n}\n\n}  // namespace KESTparse\n";
  }

  [[nodiscard]] bool empty() const { return rules_.empty(); }

 private:
  /// Gives the rules of `function` and of what it calls to a class.
  void collect(const std::string& blockClass, const Function& function,
               std::set<std::string>& seen) {
    const bool isCalled = function.blockClass != blockClass;
    for (const Rule& rule : function.rules) {
      if (function.blockClass.empty() || rule.isForCallers == isCalled) {
        add(blockClass, rule);
      }
    }
    for (const std::string& called : function.calls) {
      if (!seen.insert(called).second) {
        continue;
      }
      const auto [begin, end] = sources_.functions.equal_range(called);
      for (auto it = begin; it != end; ++it) {
        if (it->second.blockClass != blockClass) {
          collect(blockClass, it->second, seen);
        }
      }
    }
  }

  void add(const std::string& blockClass, Rule rule) {
    if (rule.severity.empty()) {
      const auto forwards = sources_.functions.find(rule.text);
      if (forwards == sources_.functions.end()) {
        return;
      }
      rule.severity = "error";
      rule.text = forwards->second.forwardedText;
    }
    const auto [begin, end] = sources_.derived.equal_range(blockClass);
    for (auto it = begin; it != end; ++it) {
      add(it->second, rule);
    }
    std::vector<Rule>& known = rules_[{blockClass, rule.name}];
    if (std::none_of(known.begin(), known.end(),
                     [&rule](const Rule& other) { return other.sentence == rule.sentence; })) {
      known.push_back(std::move(rule));
    }
  }

  const Sources& sources_;
  std::map<std::pair<std::string, std::string>, std::vector<Rule>> rules_;  // by class and name
};

std::string contentOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  if (!in) {
    throw std::runtime_error("cannot read " + path);
  }
  return content.str();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Sources sources;
    for (int i = 2; i < argc; ++i) {
      const Tokens tokens = tokensOf(contentOf(argv[i]));
      Reader(tokens, sources).read();
    }
    const Table table(sources);
    std::ofstream out(argc > 1 ? argv[1] : "");
    table.write(out);
    out.close();
    if (!out || table.empty()) {
      throw std::runtime_error("no table was written");
    }
  } catch (const std::exception& fault) {
    std::cerr << "rule-table: " << fault.what() << "\n";
    return 1;
  }
  return 0;
}
