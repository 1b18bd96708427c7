#include "KESTparse/document/Explanations.h"

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
