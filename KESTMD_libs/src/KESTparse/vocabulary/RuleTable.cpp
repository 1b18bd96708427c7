#include "KESTparse/vocabulary/RuleTable.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <typeinfo>

#include "KESTparse/framework/InputBlock.h"

namespace KESTparse {
namespace {

/// The name of the class of a block, without its namespace.
std::string classOf(const InputBlock& block) {
  int fault = 0;
  const std::unique_ptr<char, decltype(&std::free)> readable(
      abi::__cxa_demangle(typeid(block).name(), nullptr, nullptr, &fault), &std::free);
  const std::string name = fault == 0 ? readable.get() : "";
  return name.substr(name.rfind(':') + 1);
}

}  // namespace

std::span<const RuleFacts> rulesOf(const InputBlock& block) {
  const std::string name = classOf(block);
  const std::span<const RuleFacts> all = allRules();
  const auto isOther = [&name](const RuleFacts& rule) { return rule.blockClass != name; };
  const auto begin = std::find_if_not(all.begin(), all.end(), isOther);
  return {begin, std::find_if(begin, all.end(), isOther)};
}

std::string ruleCode(std::string_view keyword, std::string_view rule) {
  std::string code(keyword);
  std::transform(code.begin(), code.end(), code.begin(), [](char c) {
    return c == '_' ? '-' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return code + "/" + std::string(rule);
}

std::string withoutValues(std::string_view sentence) {
  std::string text(sentence);
  for (std::size_t open = text.find('{'); open != std::string::npos;
       open = text.find('{', open + 1)) {
    const std::size_t close = text.find('}', open);
    if (close == std::string::npos) {
      break;
    }
    // What hangs on a word is a hint that is only there at times.
    const bool isHint = open > 0 && text[open - 1] != ' ' && text[open - 1] != '\'' &&
                        text[open - 1] != '(' && text[open - 1] != '\n';
    text.replace(open, close + 1 - open, isHint ? "" : "...");
  }
  return text;
}

}  // namespace KESTparse
