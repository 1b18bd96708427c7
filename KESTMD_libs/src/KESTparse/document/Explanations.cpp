#include "KESTparse/document/Explanations.h"

#include <fmt/format.h>

#include <array>

#include "ExplanationWords.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"

namespace KESTparse {

std::vector<std::string_view> tagNamesOf(const InputBlock& block) {
  std::vector<std::string_view> names;
  names.reserve(block.getLogicalNumTags());
  for (const InputTag& tag : block.logicalTags()) {
    names.push_back(tag.getName());
  }
  return names;
}

std::vector<std::string_view> blockNamesOf(const InputBlock& block) {
  std::vector<std::string_view> names;
  names.reserve(block.getLogicalNumBlocks());
  for (const InputBlock& child : block.logicalBlocks()) {
    names.push_back(child.getName());
  }
  return names;
}

StopWords explainStop(std::string_view text) {
  constexpr std::string_view named = " named ";
  constexpr std::string_view notUnique = " is not unique!";
  struct Bearer {
    std::string_view sentence;  // how the stop begins
    std::string_view block;
  };
  constexpr std::array<Bearer, 3> bearers{{{"The boundary", "BOUNDARY"},
                                           {"The inner boundary", "INNER_BOUNDARY"},
                                           {"The source", "EXTERNAL_SOURCE"}}};
  for (const Bearer& bearer : bearers) {
    const std::size_t begin = bearer.sentence.size() + named.size();
    if (text.starts_with(bearer.sentence) &&
        text.substr(bearer.sentence.size()).starts_with(named) && text.ends_with(notUnique)) {
      return {fmt::format("several {} blocks are named '{}'", bearer.block,
                          text.substr(begin, text.size() - begin - notUnique.size())),
              fmt::format("give each {} a 'name' of its own", bearer.block)};
    }
  }
  if (text == "globalvalues.gravity > 0") {
    return {"there is no simulation without 'gravity' above 0",
            "give the acceleration in m/s2; on earth it is 9.81"};
  }
  if (text == "error off-channel source: cross section  not found!") {
    return {"the off-channel source does not tell between which cross sections it lies",
            "name both in 'cross_sections', the upstream one first"};
  }
  return {fmt::format("the converter stops here: {}", text), "change what the message names"};
}

std::string quotedText(std::string_view text) {
  constexpr std::size_t longest = 60;
  std::string words = "'";
  bool isBehindBlank = false;
  for (const char c : text) {
    const bool isBlank = isWhiteSpace(c) || c == '\r';
    const bool startsCharacter = (static_cast<unsigned char>(c) & 0xc0) != 0x80;
    if (words.size() > longest && startsCharacter) {
      words += "...";
      break;
    }
    if (!isBlank || !isBehindBlank) {
      words += isBlank ? ' ' : c;
    }
    isBehindBlank = isBlank;
  }
  return words + "'";
}

std::string_view indentationAt(std::string_view text, std::size_t at) {
  const std::size_t feed = at == 0 ? std::string_view::npos : text.rfind('\n', at - 1);
  const std::size_t begin = feed == std::string_view::npos ? 0 : feed + 1;
  const std::size_t end = std::min(text.find_first_not_of(" \t", begin), text.size());
  return text.substr(begin, std::min(end, at) - begin);
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view space = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(space);
  return begin == std::string_view::npos
             ? std::string_view()
             : text.substr(begin, text.find_last_not_of(space) - begin + 1);
}

}  // namespace KESTparse
