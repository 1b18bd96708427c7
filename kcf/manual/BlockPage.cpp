#include "manual/BlockPage.h"

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/Scanner.h"
#include "KESTparse/vocabulary/Example.h"
#include "KESTparse/vocabulary/Names.h"
#include "KESTparse/vocabulary/RuleTable.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "manual/Html.h"

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
};

Decided decidedFor(const Place& place, const InputTag& tag, const TagTraits& traits,
                   const InputTag& deciding, const Supplement& supplement) {
  Decided decided;
  const bool isAsked = (tag.isMandatoryBySchema() && tag.getDefaultValue().empty()) ||
                       refusesItsDefault(tag, traits);
  const bool isMandatory =
      isAsked && std::all_of(traits.rules.begin(), traits.rules.end(),
                             [&](auto& rule) { return rule.other == deciding.getName(); });
  for (const std::string& choice : allowedValuesOf(deciding)) {
    const bool isUsed = std::all_of(traits.rules.begin(), traits.rules.end(), [&](auto& rule) {
      return rule.condition == nullptr || rule.other != deciding.getName() ||
             rule.condition->isMet(choice);
    });
    if (!isUsed) {
      decided.unused.push_back(choice);
    } else if (isMandatory ||
               supplement.needs(place.path, choice).contains(std::string(tag.getName()))) {
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
  return escaped(tag.getTypeName() + (form.empty() ? "" : ": " + form)) +
         (tag.isRepeatable() ? "; may be given more than once" : "");
}

/// What the value must satisfy by itself.
std::string domainHtml(const Place& place, const InputTag& tag, const TagTraits& traits,
                       const Supplement& supplement) {
  std::string html;
  const auto add = [&html](const std::string& part) {
    html += (html.empty() || part.empty() ? "" : "<br>") + part;
  };
  const bool isList =
      traits.itemCount != 0 || !traits.entries.empty() || !traits.constraint.empty();
  add(prose(isList ? std::string(traits.constraint) : traits.value->getConstraintDescription()));
  if (tag.isRestricted()) {
    const std::vector<std::string> choices = allowedValuesOf(tag);
    std::string rows;
    for (const std::string& choice : choices) {
      const std::string meaning = supplement.meaning(place.path, tag.getName(), choice);
      if (!meaning.empty()) {
        rows +=
            "<li>" + code(choice) + " <span class=\"meaning\">" + prose(meaning) + "</span></li>";
      }
    }
    add(rows.empty() ? "one of " + codes(choices, ", ")
                     : "one of<ul class=\"choices\">" + rows + "</ul>");
  } else if (!traits.entries.empty()) {
    add("items out of " + codes(traits.entries, ", "));
  }
  return html;
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
    }
    const std::string need = requirement(deciding, decided);
    row.set("need", need);
    row.set("isMust", data(need != "optional"));
    row.set("needClass", need == "optional" ? "optional" : "needed");
    data cells(data::type::list);
    const auto cell = [&cells](std::string_view label, const std::string& html) {
      data one;
      one.set("label", std::string(label));
      if (!html.empty()) {
        one.set("html", html);
      }
      cells.push_back(one);
    };
    cell("Type", kindHtml(*tag_, traits_.kind));
    cell("Unit", unitHtml(tag_->getUnit()));
    cell("Default", tag_->getDefaultValue().empty() || refusesItsDefault(*tag_, traits_)
                        ? ""
                        : code(tag_->getDefaultValue()));
    cell("Range and values", domainHtml(*place_, *tag_, traits_, *context_->supplement));
    cell("Condition", conditions(deciding, decided));
    cell("Description", help(dependents));
    row.set("cells", cells);
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

  [[nodiscard]] std::string conditions(const InputTag* deciding, const Decided& decided) const {
    std::string html;
    for (const TagRule& rule : traits_.rules) {
      html += (html.empty() ? "" : "<br>") + sentenceOf(rule, *tag_, tagLink, code);
    }
    if (deciding != nullptr && !tag_->isMandatoryBySchema() && !refusesItsDefault(*tag_, traits_) &&
        !decided.needed.empty()) {
      html += (html.empty() ? "" : "<br>") + ("required if " + tagLink(deciding->getName()) +
                                              " is " + codes(decided.needed, " or "));
    }
    return html;
  }

  [[nodiscard]] std::string help(const std::vector<std::string_view>& dependents) const {
    std::string html = prose(tagDescription(*place_, *tag_, *context_->supplement));
    const auto addRemark = [&html](const std::string& remark) {
      html += (html.empty() ? "" : "<br>") + ("<span class=\"remark\">" + remark + "</span>");
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

data ruleRows(const InputBlock& block, const std::string& page) {
  data rows(data::type::list);
  std::set<std::string_view> anchored;
  for (const KESTparse::RuleFacts& rule : rulesOf(block)) {
    std::string tags;
    for (const std::string& member : KESTparse::split(" ", std::string(rule.members))) {
      if (block.getLogicalTagPosition(member) >= 0) {
        tags += (tags.empty() ? "<a href=\"" : ", <a href=\"") + page + "#" + anchorOf(member) +
                "\">" + code(member) + "</a>";
      }
    }
    data row;
    // A rule with several sentences is there for each.
    if (anchored.insert(rule.name).second) {
      row.set("id", "rule-" + std::string(rule.name));
    }
    row.set("isWarning", data(rule.severity == KESTparse::Severity::warning));
    row.set("sentence", KESTparse::withoutValues(rule.sentence));
    row.set("help", KESTparse::withoutValues(rule.help));
    row.set("hasTags", data(!tags.empty()));
    row.set("tags", tags);
    rows.push_back(row);
  }
  return rows;
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
  page.set("help", prose(descriptionOf(block)));
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

  const data rules = ruleRows(block, "");
  page.set("hasRules", data(!rules.is_empty_list()));
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
