#include "manual/BlockPage.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <utility>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/Scanner.h"
#include "KESTparse/vocabulary/Example.h"
#include "KESTparse/vocabulary/Names.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "manual/Html.h"
#include "manual/MessagePages.h"

namespace kcf {
namespace {

using kainjow::mustache::data;
using KESTparse::InputBlock;
using KESTparse::InputTag;
using KESTparse::Place;
using KESTparse::TagRule;
using KESTparse::TagTraits;

/// More on a block; not a snippet that shows it.
std::string longDescriptionOf(const InputBlock& block) {
  std::ostringstream text;
  block.getLongDescription(text);
  return text.str().starts_with(std::string(block.getName()) + " {") ? std::string() : text.str();
}

/// The tag whose choice decides which others are used: the one with choices that most of them look
/// at. Null when fewer than two do, and no rule of the block looks at it.
const InputTag* decidingTag(const Place& place, const Supplement& supplement) {
  std::map<std::string_view, int> numDependents;
  for (const InputTag& tag : place.block->logicalTags()) {
    for (const TagRule& rule : traitsOf(tag).rules) {
      numDependents[rule.other] += rule.condition != nullptr ? 1 : 0;
    }
  }
  const InputTag* best = nullptr;
  int most = 1;
  for (const InputTag& tag : place.block->logicalTags()) {
    int count = numDependents[tag.getName()];
    if (tag.getName() == "type") {
      for (const std::string& choice : allowedValuesOf(tag)) {
        count += supplement.needs(place.path, choice).empty() ? 0 : 2;
      }
    }
    if (tag.getNumRestrictedValues() > 1 && count > most) {
      best = &tag;
      most = count;
    }
  }
  return best;
}

/// For which choices of the deciding tag another is needed, and for which it is not used.
struct Decided {
  std::vector<std::string> needed;
  std::vector<std::string> unused;
  /// The tags that do as well, by the choices that need one of several.
  std::map<std::string, std::vector<std::string>> others;
};

/// Whether the rules of a tag let it be used where the deciding tag is `choice`.
bool isUsedFor(const std::string& choice, const TagTraits& traits, const InputTag& deciding) {
  return std::all_of(traits.rules.begin(), traits.rules.end(), [&](const TagRule& rule) {
    return rule.condition == nullptr || rule.other != deciding.getName() ||
           rule.condition->isMet(choice);
  });
}

/// As above; a tag is not used either where one that it depends on is not.
bool isUsedFor(const std::string& choice, const Place& place, const TagTraits& traits,
               const InputTag& deciding) {
  return isUsedFor(choice, traits, deciding) &&
         std::all_of(traits.rules.begin(), traits.rules.end(), [&](const TagRule& rule) {
           return rule.condition == nullptr || rule.condition->sibling < 0 ||
                  isUsedFor(choice,
                            traitsOf(place.block->getLogicalTag(
                                static_cast<std::size_t>(rule.condition->sibling))),
                            deciding);
         });
}

/// Whether a tag must be given where the deciding tag is `choice`, by the schema alone.
bool isAskedFor(const std::string& choice, const InputTag& tag, const TagTraits& traits,
                const InputTag& deciding) {
  const bool isMandatory = tag.isMandatoryBySchema() && tag.getDefaultValue().empty();
  return (isMandatory || refusesItsDefault(tag, traits)) &&
         std::all_of(traits.rules.begin(), traits.rules.end(), [&](const TagRule& rule) {
           // A mandatory tag must be given even where it is not used.
           return (isMandatory && rule.kind == TagRule::Kind::usedIf) ||
                  (rule.other == deciding.getName() && rule.condition != nullptr &&
                   rule.condition->isMet(choice));
         });
}

Decided decidedFor(const Place& place, const InputTag& tag, const TagTraits& traits,
                   const InputTag& deciding, const Supplement& supplement) {
  const std::string name(tag.getName());
  Decided decided;
  for (const std::string& choice : allowedValuesOf(deciding)) {
    bool isNeeded = isAskedFor(choice, tag, traits, deciding);
    if (!isNeeded && !isUsedFor(choice, place, traits, deciding)) {
      decided.unused.push_back(choice);
      continue;
    }
    for (Need& need : supplement.needs(place.path, choice)) {
      if (std::erase(need, name) > 0) {
        isNeeded = true;
        if (!need.empty()) {
          decided.others[choice] = need;
        }
      }
    }
    if (isNeeded) {
      decided.needed.push_back(choice);
    }
  }
  return decided;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

std::string kindHtml(const InputTag& tag, KESTparse::ValueKind kind) {
  const std::string form = formOf(kind);
  std::string type = tag.getTypeName();
  KESTparse::replaceAll(type, "whitespace separated ", "");
  return escaped(type + (form.empty() ? "" : ": " + form)) +
         (tag.isRepeatable() ? "; may be given more than once" : "");
}

/// The choices or items of a tag, each with what it means as far as that is told.
std::string choicesHtml(const Place& place, const InputTag& tag,
                        const std::vector<std::string>& choices, const Supplement& supplement) {
  std::string rows;
  for (const std::string& choice : choices) {
    const std::string meaning = supplement.meaning(place.path, tag.getName(), choice);
    rows += meaning.empty() ? "" : "<dt>" + code(choice) + "</dt><dd>" + prose(meaning) + "</dd>";
  }
  return rows.empty() ? codes(choices, ", ") : "<dl class=\"choices\">" + rows + "</dl>";
}

class Row {
 public:
  Row(const Place& place, const InputTag& tag, const BlockContext& context)
      : place_(&place), tag_(&tag), context_(&context), traits_(traitsOf(tag)) {}

  [[nodiscard]] data rowData(const InputTag* deciding,
                             const std::vector<std::string_view>& dependents) const {
    data row;
    row.set("anchor", anchorOf(tag_->getName()));
    row.set("name", code(tag_->getName()));
    Decided decided;
    if (deciding != nullptr) {
      decided = decidedFor(*place_, *tag_, traits_, *deciding, *context_->supplement);
      row.set("isDecided", data(true));
      row.set("needed", joined(decided.needed));
      row.set("unused", joined(decided.unused));
      row.set("others", othersOf(decided));
    }
    const std::string need = requirement(deciding, decided);
    row.set("need", need);
    row.set("isMust", data(need != "optional"));
    row.set("value", cells({{"Type", kindHtml(*tag_, traits_.kind)},
                            {"Unit", unitHtml(tag_->getUnit())},
                            {"Range", range()},
                            {"Default", defaultValue()}}));
    row.set("told",
            cells({{"Description", prose(tagDescription(*place_, *tag_, *context_->supplement))},
                   {"Choices", choices()},
                   {"Condition", conditions(deciding, decided)},
                   {"Remarks", remarks(dependents)}}));
    return row;
  }

 private:
  [[nodiscard]] std::string requirement(const InputTag* deciding, const Decided& decided) const {
    const bool isConditional =
        std::any_of(traits_.rules.begin(), traits_.rules.end(),
                    [this](const TagRule& rule) { return isRequirement(rule, *tag_); });
    if (tag_->isMandatoryBySchema() || refusesItsDefault(*tag_, traits_)) {
      return isConditional ? "required on condition" : "required";
    }
    return deciding != nullptr && !decided.needed.empty() ? "required on condition" : "optional";
  }

  /// Labelled pieces of HTML, without the empty ones.
  static data cells(const std::vector<std::pair<std::string, std::string>>& pieces) {
    data all(data::type::list);
    for (const auto& [label, html] : pieces) {
      if (!html.empty()) {
        data one;
        one.set("label", label);
        one.set("html", html);
        all.push_back(one);
      }
    }
    return all;
  }

  /// As the script of the page takes them: "hqrelation:file weir:my,file".
  static std::string othersOf(const Decided& decided) {
    std::vector<std::string> words;
    for (const auto& [choice, others] : decided.others) {
      words.push_back(fmt::format("{}:{}", choice, fmt::join(others, ",")));
    }
    return joined(words);
  }

  [[nodiscard]] std::string defaultValue() const {
    return tag_->getDefaultValue().empty() || refusesItsDefault(*tag_, traits_)
               ? std::string()
               : code(tag_->getDefaultValue());
  }

  /// What the value must satisfy by itself.
  [[nodiscard]] std::string range() const {
    const bool isList =
        traits_.itemCount != 0 || !traits_.entries.empty() || !traits_.constraint.empty();
    std::string text =
        isList ? std::string(traits_.constraint) : traits_.value->getConstraintDescription();
    KESTparse::replaceAll(text, "Chars [a-zA-Z0-9_-] are allowed", "letters, digits, _ and -");
    return prose(text);
  }

  [[nodiscard]] std::string choices() const {
    if (tag_->isRestricted()) {
      return choicesHtml(*place_, *tag_, allowedValuesOf(*tag_), *context_->supplement);
    }
    return traits_.entries.empty()
               ? std::string()
               : "Items of the list:" +
                     choicesHtml(*place_, *tag_, traits_.entries, *context_->supplement);
  }

  [[nodiscard]] std::string conditions(const InputTag* deciding, const Decided& decided) const {
    std::string html;
    const auto add = [&html](const std::string& sentence) {
      html += (html.empty() ? "" : "<br>") + sentence;
    };
    for (const TagRule& rule : traits_.rules) {
      add(sentenceOf(rule, *tag_, tagLink, code));
    }
    if (deciding == nullptr || tag_->isMandatoryBySchema() || refusesItsDefault(*tag_, traits_)) {
      return html;
    }
    // The choices that need the same of the other tags stand together.
    std::map<std::vector<std::string>, std::vector<std::string>> choicesByOthers;
    for (const std::string& choice : decided.needed) {
      const auto others = decided.others.find(choice);
      choicesByOthers[others == decided.others.end() ? std::vector<std::string>() : others->second]
          .push_back(choice);
    }
    for (const auto& [others, choices] : choicesByOthers) {
      std::string links;
      for (const std::string& other : others) {
        links += " or " + tagLink(other);
      }
      const bool isAlways = choices.size() == allowedValuesOf(*deciding).size();
      add((links.empty() ? "required" : "this" + links + " is required") +
          (isAlways ? std::string()
                    : " if " + tagLink(deciding->getName()) + " is " + codes(choices, " or ")));
    }
    return html;
  }

  [[nodiscard]] std::string remarks(const std::vector<std::string_view>& dependents) const {
    std::string html;
    const auto addRemark = [&html](const std::string& remark) {
      html += (html.empty() ? "" : "<br>") + remark;
    };
    if (!KESTparse::isWritableName(tag_->getName())) {
      addRemark(
          "Cannot be written in a command file: its name holds a character that no name has.");
    }
    if (const std::vector<std::string> named =
            KESTparse::blocksNamedBy(place_->path, tag_->getName());
        !named.empty()) {
      std::string links;
      for (const std::string& path : named) {
        links += (links.empty() ? "" : ", ") + linkTo(path);
      }
      addRemark("Names " + links);
    }
    if (!dependents.empty()) {
      std::string links;
      for (const std::string_view dependent : dependents) {
        links += (links.empty() ? "" : ", ") + tagLink(dependent);
      }
      addRemark("Decides on " + links);
    }
    return html;
  }

  /// A link to another block, by as many names as tell where it is.
  [[nodiscard]] std::string linkTo(const std::string& path) const {
    for (const Place& other : *context_->places) {
      if (other.path == path) {
        const std::size_t slash = path.rfind('/', path.rfind('/') - 1);
        return "<a href=\"" + pageOf(other) + "\">" + code(path.substr(slash + 1)) + "</a>";
      }
    }
    return code(path);
  }

  const Place* place_;
  const InputTag* tag_;
  const BlockContext* context_;
  TagTraits traits_;
};

/// The tags that take the name of the block at `place`.
data namedBy(const Place& place, const BlockContext& context) {
  data rows(data::type::list);
  for (const Place& other : *context.places) {
    for (const InputTag& tag : other.block->logicalTags()) {
      const std::vector<std::string> named = KESTparse::blocksNamedBy(other.path, tag.getName());
      if (std::find(named.begin(), named.end(), place.path) != named.end()) {
        data row;
        row.set("page", pageOf(other) + "#" + anchorOf(tag.getName()));
        row.set("tag", code(tag.getName()));
        row.set("path", code(other.path));
        rows.push_back(row);
      }
    }
  }
  return rows;
}

data tagRows(const Place& place, const BlockContext& context, const InputTag* deciding) {
  std::map<std::string_view, std::vector<std::string_view>> dependents;
  for (const InputTag& tag : place.block->logicalTags()) {
    for (const TagRule& rule : traitsOf(tag).rules) {
      if (rule.kind != TagRule::Kind::exclusive) {
        dependents[rule.other].push_back(tag.getName());
      }
    }
  }
  data rows(data::type::list);
  for (const InputTag& tag : place.block->logicalTags()) {
    rows.push_back(Row(place, tag, context).rowData(deciding, dependents[tag.getName()]));
  }
  return rows;
}

}  // namespace

std::string descriptionOf(const InputBlock& block) {
  std::ostringstream text;
  block.getDescription(text);
  return text.str();
}

std::string tagDescription(const Place& place, const InputTag& tag, const Supplement& supplement) {
  const std::string own(tag.getDescription());
  const std::string more = supplement.description(place.path, tag.getName());
  return own.empty() || more.empty() ? own + more : own + " " + more;
}

data blockData(const Place& place, const BlockContext& context) {
  const InputBlock& block = *place.block;
  data page;
  page.set("name", std::string(block.getName()));
  page.set("path", breakable(place.path));
  data way(data::type::list);
  for (const Place& other : *context.places) {
    if (other.path == "/" ? place.path != "/" : place.path.starts_with(other.path + "/")) {
      data step;
      step.set("page", pageOf(other));
      step.set("name", std::string(other.block->getName()));
      way.push_back(step);
    }
  }
  page.set("way", way);
  if (const InputBlock* const parent = block.getLogicalParent(); parent != nullptr) {
    page.set("occurrence", occurrence(block));
    page.set("parent", std::string(parent->getName()));
  }
  const std::string completion = context.supplement->description(place.path);
  page.set("help", prose(descriptionOf(block) + (completion.empty() ? "" : " " + completion)));
  if (const std::string more = longDescriptionOf(block); !more.empty()) {
    page.set("more", prose(more));
  }
  data blocks(data::type::list);
  for (const InputBlock& child : block.logicalBlocks()) {
    data row;
    row.set("page", pageOf({&child, pathOf(place.path, child)}));
    row.set("name", std::string(child.getName()));
    row.set("occurrence", occurrence(child));
    row.set("help", prose(descriptionOf(child)));
    blocks.push_back(row);
  }
  page.set("hasBlocks", data(block.getLogicalNumBlocks() > 0));
  page.set("blocks", blocks);

  page.set("hasTags", data(block.getLogicalNumTags() > 0));
  const InputTag* const deciding = decidingTag(place, *context.supplement);
  page.set("tags", tagRows(place, context, deciding));
  if (deciding != nullptr) {
    page.set("hasDeciding", data(true));
    page.set("deciding", breakable(deciding->getName()));
    page.set("decidingName", std::string(deciding->getName()));
    data choices(data::type::list);
    for (const std::string& choice : allowedValuesOf(*deciding)) {
      choices.push_back(data(choice));
    }
    page.set("choices", choices);
  }

  const std::string rules = rulesHtml(block, "", "");
  page.set("hasRules", data(!rules.empty()));
  page.set("rules", rules);
  const data names = namedBy(place, context);
  page.set("hasNamedBy", data(!names.is_empty_list()));
  page.set("namedBy", names);
  page.set("example", exampleOf(place));
  data uses(data::type::list);
  for (const Link& use : context.uses) {
    data row;
    row.set("page", use.page);
    row.set("name", use.name);
    row.set("last", data(&use == &context.uses.back()));
    uses.push_back(row);
  }
  page.set("hasUses", data(!context.uses.empty()));
  page.set("uses", uses);
  return page;
}

}  // namespace kcf
