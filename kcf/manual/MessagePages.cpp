#include "manual/MessagePages.h"

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "KESTparse/base/Console.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/framework/Guard.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/RuleTable.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "manual/Html.h"

namespace kcf {
namespace {

using kainjow::mustache::data;
using KESTparse::CodeFacts;
using KESTparse::InputBlock;
using KESTparse::RuleFacts;
using KESTparse::Severity;

/// What the converter prints of a rule, where that is known.
std::string converterText(const RuleFacts& rule) {
  return rule.text == "{}" ? std::string() : KESTparse::withoutValues(rule.text);
}

/// Links to the tags that a rule is about.
std::string tagLinks(const InputBlock& block, const RuleFacts& rule, const std::string& page) {
  std::string links;
  for (const std::string& member : KESTparse::split(" ", rule.members)) {
    const int position = block.getTagPositionOfMember(member);
    if (position >= 0) {
      const std::string_view tag =
          block.getLogicalTag(static_cast<std::size_t>(position)).getName();
      links += (links.empty() ? "<a href=\"" : ", <a href=\"") + page + "#" + anchorOf(tag) +
               "\">" + code(tag) + "</a>";
    }
  }
  return links;
}

/// What stops the converter in `text`; empty when it reads on to the end.
std::string stopIn(std::string_view text, const KESTparse::KestrixInputRoot& schema) {
  KESTparse::QuietConsole console;
  KESTparse::GlobalValues values;
  values.console = &console;
  values.readsFiles = false;
  const KESTparse::ActiveValues active(values);
  const auto root = schema.logicalClone(nullptr);
  const auto stop = KESTparse::stopOf([&] {
    std::istringstream in{std::string(text)};
    KESTparse::InputParser(*root).parse(in, false, "");
  });
  return stop ? KESTparse::withSigns(stop->text) : std::string();
}

data codeData(const ToldCode& code) {
  const CodeFacts& facts = *code.facts;
  data row;
  row.set("name", std::string(facts.name));
  row.set("kind",
          std::string(facts.severity == Severity::warning ? "a warning" : "an error") +
              (facts.origin == KESTparse::Origin::checker ? ", found by kcf check alone" : ""));
  row.set("summary", std::string(facts.summary));
  row.set("meaning", std::string(facts.meaning));
  row.set("hasExample", data(!facts.example.empty()));
  row.set("exampleOf", facts.exampleOf().empty() ? "" : ", in " + std::string(facts.exampleOf()));
  row.set("example", std::string(facts.example));
  row.set("hasMended", data(!facts.mended.empty()));
  row.set("mended", std::string(facts.mended));
  row.set("isStopped", data(!code.stop.empty()));
  row.set("stop", code.stop);
  return row;
}

data codeGroups(const std::vector<ToldCode>& all) {
  data groups(data::type::list);
  std::string_view last;
  data codes(data::type::list);
  const auto close = [&] {
    if (!last.empty()) {
      data group;
      group.set("name", std::string(last));
      group.set("id", slug(last));
      group.set("codes", codes);
      groups.push_back(group);
      codes = data(data::type::list);
    }
  };
  for (const ToldCode& code : all) {
    if (code.facts->group != last) {
      close();
      last = code.facts->group;
    }
    codes.push_back(codeData(code));
  }
  close();
  return groups;
}

/// The codes of rules, each with its sentences and links to the blocks that have it.
data ruleCodes(const std::vector<KESTparse::Place>& places) {
  struct Entry {
    std::vector<std::string> sentences;
    std::vector<std::string> links;
  };
  std::map<std::string, Entry> entries;
  const auto addOnce = [](std::vector<std::string>& list, const std::string& text) {
    if (std::find(list.begin(), list.end(), text) == list.end()) {
      list.push_back(text);
    }
  };
  for (const KESTparse::Place& place : places) {
    for (const RuleFacts& rule : rulesOf(*place.block)) {
      Entry& entry = entries[KESTparse::ruleCode(place.block->getName(), rule.name)];
      addOnce(entry.sentences, KESTparse::withoutValues(rule.sentence));
      addOnce(entry.links, "<a href=\"" + pageOf(place) + "#" + ruleAnchor(rule.name) + "\">" +
                               breakable(place.path) + "</a>");
    }
  }
  data rows(data::type::list);
  for (const auto& [name, entry] : entries) {
    data row;
    row.set("code", name);
    data sentences(data::type::list);
    for (const std::string& sentence : entry.sentences) {
      sentences.push_back(data(sentence));
    }
    row.set("sentences", sentences);
    data links(data::type::list);
    for (const std::string& link : entry.links) {
      links.push_back(data(link));
    }
    row.set("links", links);
    rows.push_back(row);
  }
  return rows;
}

}  // namespace

std::string ruleAnchor(std::string_view rule) {
  return "rule-" + std::string(rule);
}

std::string rulesHtml(const InputBlock& block, const std::string& page, const std::string& anchor) {
  data rows(data::type::list);
  std::set<std::string_view> anchored;
  for (const RuleFacts& rule : rulesOf(block)) {
    data row;
    // A rule with several sentences is there for each.
    if (anchored.insert(rule.name).second) {
      row.set("id", anchor + ruleAnchor(rule.name));
    }
    row.set("code", KESTparse::ruleCode(block.getName(), rule.name));
    row.set("isWarning", data(rule.severity == Severity::warning));
    row.set("sentence", KESTparse::withoutValues(rule.sentence));
    row.set("help", KESTparse::withoutValues(rule.help));
    const std::string told = converterText(rule);
    row.set("isTold", data(!told.empty()));
    row.set("told", told);
    const std::string tags = tagLinks(block, rule, page);
    row.set("hasTags", data(!tags.empty()));
    row.set("tags", tags);
    rows.push_back(row);
  }
  if (rows.is_empty_list()) {
    return {};
  }
  data list;
  list.set("rules", rows);
  return rendered("rules", list);
}

std::vector<ToldCode> toldCodes(const KESTparse::KestrixInputRoot& root) {
  std::vector<ToldCode> codes;
  for (const CodeFacts& facts : KESTparse::codeFacts()) {
    codes.push_back(
        {&facts, facts.exampleOf().empty() ? stopIn(facts.example, root) : std::string()});
  }
  return codes;
}

std::string codesHtml(const std::vector<ToldCode>& codes,
                      const std::vector<KESTparse::Place>& places) {
  data page;
  page.set("groups", codeGroups(codes));
  page.set("rules", ruleCodes(places));
  return rendered("codes", page);
}

}  // namespace kcf
