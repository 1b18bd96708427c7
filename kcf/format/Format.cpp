#include "format/Format.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>

#include "CommandFiles.h"
#include "KESTparse/document/Diff.h"
#include "KESTparse/document/Format.h"
#include "KESTparse/document/SyntaxTree.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "Tell.h"

namespace kcf {
namespace {

using KESTparse::SyntaxTree;
using KESTparse::TreeFault;
using KESTparse::TreeFaultAt;

/// The text that is wrong, between quotes and not too long.
std::string quoted(const SyntaxTree& tree, KESTparse::Span at) {
  constexpr std::size_t longest = 40;
  const std::string_view text = at.in(tree.text());
  return "'" + std::string(text.substr(0, longest)) + (text.size() > longest ? "...'" : "'");
}

std::string sentenceOf(const SyntaxTree& tree, const TreeFaultAt& fault) {
  const std::string name = quoted(tree, tree[fault.node].name());
  switch (fault.kind) {
    case TreeFault::missingClosingBrace:
      return "the block " + name + " is never closed";
    case TreeFault::missingOpeningBrace:
      return "the block " + name + " has no opening brace";
    case TreeFault::strayClosingBrace:
      return "this brace closes no block";
    case TreeFault::missingName:
      return "there is no name in front of " + quoted(tree, fault.at);
    case TreeFault::missingEquals:
      return "there is no equals sign in " + quoted(tree, fault.at);
    case TreeFault::strayText:
      return quoted(tree, fault.at) + " is neither a block nor a tag";
    case TreeFault::invalidName:
      return quoted(tree, fault.at) + " is no name: a name has letters, digits, '_' and '-'";
    case TreeFault::unopenedParenthesis:
      return "this parenthesis closes no list";
    case TreeFault::unclosedList:
      return "the list of " + name + " is never closed";
    case TreeFault::unfinished:
      return "the file ends within " + name + ": a line feed is missing behind it";
    case TreeFault::byteOrderMark:
      return "the file begins with a byte order mark";
    case TreeFault::swallowedByte:
      return quoted(tree, fault.at) +
             " is lost, since it stands right behind the brace: a blank is missing";
  }
  return {};
}

class Formatting {
 public:
  explicit Formatting(const Arguments& arguments)
      : checks_(arguments.has("--check")),
        diffs_(arguments.has("--diff")),
        inputName_(arguments.value("--stdin-filepath", standardInput)) {}

  int run(const std::vector<std::string>& paths) {
    const CommandFiles files = findCommandFiles(paths);
    for (const std::string& fault : files.faults) {
      refuse(fault);
    }
    for (const std::string& path : files.paths) {
      format(path);
    }
    return status_;
  }

 private:
  void refuse(const std::string& fault) {
    tell("kcf: " + fault);
    status_ = status::wrongUsage;
  }

  void fail() { status_ = std::max(status_, status::failed); }

  void format(const std::string& path) {
    const bool isInput = path == standardInput;
    const std::string name = isInput ? inputName_ : shownPath(path);
    try {
      const SyntaxTree tree(readCommandFile(path));
      if (tree.faults().empty()) {
        finish(path, name, tree.text(), KESTparse::formatted(tree, schema_));
      } else {
        tellFaults(tree, name);
      }
    } catch (const std::exception& fault) {
      refuse(reasonOf(fault));
    }
  }

  /// Tells why a file is left as it is.
  void tellFaults(const SyntaxTree& tree, const std::string& name) {
    constexpr std::size_t mostFaults = 20;
    const KESTparse::LineTable lines(tree.text());
    const std::size_t count = std::min(tree.faults().size(), mostFaults);
    for (std::size_t i = 0; i < count; ++i) {
      const TreeFaultAt& fault = tree.faults()[i];
      const KESTparse::LineColumn at = lines.at(fault.at.begin);
      tell(fmt::format("{}:{}:{}: {}", name, at.line, at.column, sentenceOf(tree, fault)));
    }
    if (tree.faults().size() > count) {
      tell(fmt::format("{}: {} more faults", name, tree.faults().size() - count));
    }
    fail();
  }

  /// Does with the formatted text what was asked for.
  void finish(const std::string& path, const std::string& name, const std::string& before,
              const std::string& after) {
    const bool differs = before != after;
    if (checks_ && differs) {
      fail();
    }
    if (diffs_) {
      std::cout << KESTparse::unifiedDiff(before, after, name, name);
    } else if (checks_) {
      std::cout << (differs ? name + "\n" : "");
    } else if (path == standardInput) {
      std::cout << after;
    } else if (differs) {
      replaceCommandFile(path, before, after);
    }
  }

  bool checks_;
  bool diffs_;
  std::string inputName_;
  KESTparse::KestrixInputRoot schema_;
  int status_ = status::done;
};

}  // namespace

Verb formatVerb() {
  return {"format",
          "Check and format",
          "Bring command files into the one style",
          R"(Files, and all *.kcf files of folders, are replaced by their formatted text.
What they say to main-converter stays the same. A file with faults of syntax
stays as it is, and its faults are told. Lines between the comments
"// kcf: format off" and "// kcf: format on" stay as they are.

The status is 0 when all is done, 1 when --check finds a file that is not
formatted or a file has faults of syntax, and 2 when a PATH cannot be read or
written.)",
          {{.name = "--check", .help = "Change nothing; name the files that would change"},
           {.name = "--diff", .help = "Change nothing; print what would change as a unified diff"},
           {.name = "--stdin-filepath",
            .help = "Name of what comes from standard input, for messages",
            .value = "PATH",
            .isPath = true},
           {.name = "PATH",
            .help = "A command file, a folder, or - for standard input",
            .value = "PATH",
            .required = true,
            .repeatable = true,
            .isPath = true}},
          [](const Arguments& arguments) {
            return Formatting(arguments).run(arguments.values("PATH"));
          },
          {{"See what would change", "kcf format --diff setup.kcf"},
           {"Format all command files of a project", "kcf format ."}}};
}

}  // namespace kcf
