#include "language-server/Describe.h"

#include <fmt/format.h>

#include <sstream>
#include <string_view>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "explain/Remark.h"

namespace kcf::server {
namespace {

std::string code(std::string_view text) {
  return "`" + std::string(text) + "`";
}

void addParagraph(std::string& text, const std::string& more) {
  if (!more.empty()) {
    text += (text.empty() ? "" : "\n\n") + more;
  }
}

/// A sentence that begins with a capital and ends with a full stop.
std::string sentence(std::string text) {
  if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
    text.front() = static_cast<char>(text.front() - 'a' + 'A');
  }
  return text.empty() || text.ends_with('.') ? text : text + ".";
}

}  // namespace

std::string describeBlock(const KESTparse::Place& place) {
  std::ostringstream brief;
  place.block->getDescription(brief);
  std::ostringstream more;
  place.block->getLongDescription(more);
  std::string text = fmt::format("**{}** (block, {})", place.block->getName(),
                                 KESTparse::occurrence(*place.block));
  addParagraph(text, KESTparse::withSigns(brief.str()));
  addParagraph(text, KESTparse::withSigns(more.str()));
  return text;
}

std::string describeTag(const KESTparse::Place& place, const KESTparse::InputTag& tag,
                        const Supplement& supplement) {
  std::string text = fmt::format("**{}** (tag of {}{}{})", tag.getName(), place.block->getName(),
                                 tag.isMandatoryBySchema() ? ", mandatory" : "",
                                 tag.isRepeatable() ? ", may stand more than once" : "");
  addParagraph(text, KESTparse::withSigns(std::string(tag.getDescription())));
  addParagraph(text, supplement.description(place.path, tag.getName()));
  addParagraph(text, "Value: " + sentence(remarkOf(tag)));
  std::string conditions;
  for (const KESTparse::TagRule& rule : KESTparse::traitsOf(tag).rules) {
    conditions +=
        (conditions.empty() ? "" : " ") + sentence(KESTparse::sentenceOf(rule, tag, code, code));
  }
  addParagraph(text, conditions);
  return text;
}

std::string describeChoice(const KESTparse::Place& place, const KESTparse::InputTag& tag,
                           const std::string& choice, const Supplement& supplement) {
  return sentence(supplement.meaning(place.path, tag.getName(), choice));
}

}  // namespace kcf::server
