#include "editors/EditorWords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/base/Files.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/Scanner.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace kcf {
namespace {

using KESTparse::InputBlock;
using KESTparse::InputTag;
using KESTparse::isNameCharacter;
using KESTparse::Span;
using KESTparse::TagTraits;
using KESTparse::ValueKind;

using Words = std::set<std::string, std::less<>>;

/// The lists by their names. A tag is in one list, by what its values are wherever it stands:
/// "numbers" and "choices" are nothing else, "texts" are never one of these words, and "mixed" is
/// the rest.
using Lists = std::map<std::string, Words, std::less<>>;

/// Adds the words of `text`; editors tell words apart, not choices of several words.
void addWords(std::string_view text, Words& words) {
  while (!text.empty()) {
    const auto* const end = std::find_if_not(text.begin(), text.end(), isNameCharacter);
    const std::string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    if (word.find_first_not_of("0123456789") != std::string_view::npos) {
      words.emplace(word);
    }
    text.remove_prefix(std::min(text.size(), word.size() + 1));
  }
}

bool isNumeric(ValueKind kind) {
  return kind == ValueKind::integer || kind == ValueKind::real || kind == ValueKind::integers ||
         kind == ValueKind::reals;
}

/// The list that a tag belongs to at one place; its choices go to `choices`.
std::string_view listOf(const InputTag& tag, Words& choices) {
  const TagTraits traits = traitsOf(tag);
  const std::vector<std::string> allowed = allowedValuesOf(tag);
  for (const std::vector<std::string>* words : {&allowed, &traits.entries}) {
    for (const std::string& word : *words) {
      addWords(word, choices);
    }
  }
  if (!allowed.empty()) {
    return "choices";
  }
  if (isNumeric(traits.kind)) {
    return "numbers";
  }
  const bool isMixed = !traits.entries.empty() || traits.kind == ValueKind::outputValues ||
                       traits.kind == ValueKind::namedReals;
  return isMixed ? "mixed" : "texts";
}

void collect(const InputBlock& block, Lists& lists,
             std::map<std::string, std::set<std::string_view>>& tags) {
  for (const InputTag& tag : block.logicalTags()) {
    if (KESTparse::isWritableName(tag.getName())) {
      tags[std::string(tag.getName())].insert(listOf(tag, lists["words"]));
    }
  }
  for (const InputBlock& child : block.logicalBlocks()) {
    lists["blocks"].emplace(child.getName());
    collect(child, lists, tags);
  }
}

Lists listsOfVocabulary() {
  Lists lists;
  std::map<std::string, std::set<std::string_view>> tags;
  collect(KESTparse::KestrixInputRoot(), lists, tags);
  for (const auto& [tag, kinds] : tags) {
    lists["tags"].insert(tag);
    lists[std::string(kinds.size() == 1 ? *kinds.begin() : "mixed")].insert(tag);
  }
  return lists;
}

/// The row of most names in `line` with `between` between each two.
Span rowIn(std::string_view line, std::string_view between) {
  const auto endOfName = [&](std::size_t at) {
    while (at < line.size() && isNameCharacter(line[at])) {
      ++at;
    }
    return at;
  };
  Span longest;
  std::size_t most = 0;
  for (std::size_t at = 0; at < line.size(); ++at) {
    Span row{at, endOfName(at)};
    std::size_t count = row.empty() ? 0 : 1;
    while (count > 0 && line.substr(row.end).starts_with(between)) {
      const std::size_t next = row.end + between.size();
      const std::size_t end = endOfName(next);
      if (end == next) {
        break;
      }
      row.end = end;
      ++count;
    }
    if (count > most) {
      longest = row;
      most = count;
    }
    at = row.end;
  }
  return longest;
}

/// The text of a file with the words as they are now. A line with "kcf words: LIST(BETWEEN)" says
/// that the longest row of words in the line below it is that list.
std::string withWords(std::string_view text, const Lists& lists, const std::string& path) {
  constexpr std::string_view mark = "kcf words: ";
  std::string result;
  std::size_t done = 0;
  std::size_t found = text.find(mark);
  if (found == std::string_view::npos) {
    throw std::runtime_error("there is no '" + std::string(mark) + "' in '" + path + "'");
  }
  for (; found != std::string_view::npos; found = text.find(mark, done)) {
    const std::size_t name = found + mark.size();
    const std::size_t lineEnd = std::min(text.find('\n', name), text.size());
    const std::size_t open = text.find('(', name);
    const std::size_t close = text.rfind(')', lineEnd);
    const auto list = open < lineEnd ? lists.find(text.substr(name, open - name)) : lists.end();
    if (list == lists.end() || close < open || lineEnd == text.size()) {
      throw std::runtime_error("'" + path + "' asks for a list that is none: '" +
                               std::string(text.substr(found, lineEnd - found)) + "'");
    }
    const std::string_view between = text.substr(open + 1, close - open - 1);
    const std::string_view line =
        text.substr(lineEnd + 1, text.find('\n', lineEnd + 1) - lineEnd - 1);
    const Span row = rowIn(line, between);
    result += text.substr(done, lineEnd + 1 - done);
    result += line.substr(0, row.begin);
    result += fmt::format("{}", fmt::join(list->second, between));
    done = lineEnd + 1 + row.end;
  }
  result += text.substr(done);
  return result;
}

int runEditorWords(const Arguments& arguments) {
  const Lists lists = listsOfVocabulary();
  int result = status::done;
  for (const std::string& path : arguments.values("PATH")) {
    const KESTparse::FileText file = KESTparse::readFile(path);
    if (!file.wasRead) {
      throw std::runtime_error("'" + path + "' cannot be read");
    }
    const std::string fresh = withWords(file.content, lists, path);
    if (fresh == file.content) {
      continue;
    }
    if (arguments.has("--check")) {
      std::cout << path << "\n";
      result = status::failed;
    } else {
      KESTparse::replaceFile(path, fresh);
    }
  }
  return result;
}

}  // namespace

Verb editorWordsVerb() {
  return {"editor-words",
          "",
          "Bring the lists of words in files of editors up to the vocabulary",
          R"text(A line of such a file with "kcf words: LIST(BETWEEN)" says that the row
of most words in the line below it, with BETWEEN between them, is that list:
blocks; tags, and of these the numbers, choices, texts and mixed ones; words,
which are all that choices can be.)text",
          {{.name = "--check", .help = "Change nothing; name the files that would change"},
           {.name = "PATH",
            .help = "A file of an editor",
            .value = "PATH",
            .required = true,
            .repeatable = true,
            .isPath = true}},
          runEditorWords};
}

}  // namespace kcf
