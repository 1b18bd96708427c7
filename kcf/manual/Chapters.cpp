#include "manual/Chapters.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <stdexcept>

#include "Assets.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "manual/Html.h"

namespace kcf {
namespace {

using KESTparse::Place;

constexpr std::array<std::string_view, 10> chapterNames = {
    "first-setup", "first-reach", "syntax",      "files",   "boundaries",
    "sediment",    "couplings",   "controllers", "reports", "programs"};

/// The target of a link of the guide, in the manual: `/DOMAIN#multiregion` is a tag on the page of
/// a block, `files.md` another chapter.
std::string target(const std::string& written, const std::vector<Place>& places, Chapter& chapter) {
  const std::size_t hash = std::min(written.find('#'), written.size());
  const std::string page = written.substr(0, hash);
  const std::string anchor = written.substr(hash);
  if (page.starts_with('/')) {
    const auto place = std::find_if(places.begin(), places.end(),
                                    [&](const Place& each) { return each.path == page; });
    if (place == places.end()) {
      throw std::runtime_error("the chapter '" + chapter.name + "' names no block: " + page);
    }
    chapter.blocks.push_back(page);
    return pageOf(*place) + (anchor.empty() ? "" : "#" + anchorOf(anchor.substr(1)));
  }
  if (page.ends_with(".md")) {
    return page.substr(0, page.size() - 3) + ".html" + anchor;
  }
  return page.starts_with("pictures/") ? page.substr(page.find('/') + 1) : written;
}

/// Turns what stands between `before` and `after` into what `change` makes of it.
template <typename Change>
void changeAll(std::string& html, std::string_view before, std::string_view after, Change change) {
  for (std::size_t at = html.find(before); at != std::string::npos; at = html.find(before, at)) {
    at += before.size();
    const std::size_t end = html.find(after, at);
    const std::string fresh = change(html.substr(at, end - at));
    html.replace(at, end - at, fresh);
    at += fresh.size();
  }
}

/// The words of a piece of HTML.
std::string wordsOf(const std::string& html) {
  std::string words;
  bool isMarkup = false;
  for (const char c : html) {
    if (c == '<' || c == '>') {
      isMarkup = c == '<';
    } else if (!isMarkup) {
      words += c;
    }
  }
  return words;
}

/// Where the blocks and tags of the vocabulary are told, by their names.
class NamedPlaces {
 public:
  explicit NamedPlaces(const std::vector<Place>& places) {
    for (const Place& place : places) {
      const std::string page = pageOf(place);
      links_[std::string(place.block->getName())][page] = page;
      for (const KESTparse::InputTag& tag : place.block->logicalTags()) {
        const std::string name(tag.getName());
        links_[name][page] = page + "#" + anchorOf(name);
        tags_.insert(name);
        addWords(tag);
      }
    }
  }

  /// In the block that was linked last and that has the name, or in the only one. Empty for a word
  /// that is also a choice or a type, for a single letter, and where many places have the name.
  [[nodiscard]] std::string linkTo(const std::string& name,
                                   const std::vector<std::string>& recentPages) const {
    constexpr std::size_t most = 6;
    const auto found = links_.find(name);
    if (found == links_.end() || name.size() < 2 || words_.contains(name) ||
        (tags_.contains(name) && found->second.size() > most)) {
      return {};
    }
    const std::map<std::string, std::string>& links = found->second;
    const auto recent = std::find_if(recentPages.rbegin(), recentPages.rend(),
                                     [&](auto& page) { return links.contains(page); });
    if (recent != recentPages.rend()) {
      return links.at(*recent);
    }
    if (links.size() == 1) {
      return links.begin()->second;
    }
    return tags_.contains(name) ? "a-z.html#" + nameAnchor(name) : std::string();
  }

 private:
  void addWords(const KESTparse::InputTag& tag) {
    for (const std::vector<std::string>& words : {allowedValuesOf(tag), traitsOf(tag).entries}) {
      words_.insert(words.begin(), words.end());
    }
    words_.insert(tag.getTypeName());
  }

  std::map<std::string, std::map<std::string, std::string>> links_;  // by names and pages
  std::set<std::string> tags_;
  std::set<std::string> words_;  // that choices and types have
};

/// The words of `text` between two marks, from the begin of the first on.
std::string_view between(std::string_view text, std::string_view before, std::string_view after) {
  text.remove_prefix(before.size());
  return text.substr(0, text.find(after));
}

/// Makes links of the names of blocks and tags in running text, where a section names them first.
void linkNames(Chapter& chapter, const NamedPlaces& named) {
  constexpr std::string_view link = "<a href=\"";
  constexpr std::string_view opening = "<code>";
  constexpr std::string_view closing = "</code>";
  std::string html;
  std::vector<std::string> recentPages;
  std::set<std::string> linked;
  int numAround = 0;  // links, listings and headings that the text stands in
  for (std::size_t at = 0; at < chapter.html.size();) {
    const std::string_view rest = std::string_view(chapter.html).substr(at);
    for (const std::string_view around : {"a", "pre", "h1", "h2", "h3"}) {
      const std::string name(around);
      numAround += rest.starts_with("<" + name + ">") || rest.starts_with("<" + name + " ") ? 1 : 0;
      numAround -= rest.starts_with("</" + name + ">") ? 1 : 0;
    }
    if (rest.starts_with("<h2")) {
      linked.clear();
    }
    if (rest.starts_with(link)) {
      const std::string_view target = between(rest, link, "\"");
      recentPages.emplace_back(target.substr(0, target.find('#')));
    }
    if (numAround > 0 || !rest.starts_with(opening)) {
      html += chapter.html[at++];
      continue;
    }
    const std::string text(between(rest, opening, closing));
    const std::string name = text.substr(0, text.find(" ="));
    const std::string place = named.linkTo(name, recentPages);
    const std::string_view whole = rest.substr(0, opening.size() + text.size() + closing.size());
    if (!place.empty() && linked.insert(name).second) {
      html += fmt::format("{}{}\">{}</a>", link, place, whole);
    } else {
      html += whole;
    }
    at += whole.size();
  }
  chapter.html = html;
}

Chapter chapter(std::string_view name, const std::vector<Place>& places, const NamedPlaces& named) {
  Chapter made;
  made.name = name;
  made.html = asset("guide/" + std::string(name));
  const std::size_t title = made.html.find("<h1>") + 4;
  made.title = wordsOf(made.html.substr(title, made.html.find("</h1>") - title));
  const std::size_t first = made.html.find("<p>") + 3;
  const std::size_t sentence = made.html.find(". ", first);
  const std::size_t end = std::min(made.html.find("</p>", first),
                                   sentence == std::string::npos ? sentence : sentence + 1);
  made.lead = wordsOf(made.html.substr(first, end - first));
  const auto link = [&](const std::string& written) { return target(written, places, made); };
  changeAll(made.html, "href=\"", "\"", link);
  changeAll(made.html, "src=\"", "\"", link);
  linkNames(made, named);
  changeAll(made.html, "<h2", "</h2>", [](const std::string& heading) {
    return " id=\"" + slug(heading.substr(1)) + "\"" + heading;
  });
  // Texts and tables may be wider than the page: the keyboard must be able to move them.
  KESTparse::replaceAll(made.html, "<table>", R"(<div class="wide" tabindex="0"><table>)");
  KESTparse::replaceAll(made.html, "</table>", "</table></div>");
  KESTparse::replaceAll(made.html, "<pre>", "<pre tabindex=\"0\">");
  return made;
}

}  // namespace

std::vector<Chapter> chapters(const std::vector<Place>& places) {
  const NamedPlaces named(places);
  std::vector<Chapter> all;
  all.reserve(chapterNames.size());
  for (const std::string_view name : chapterNames) {
    all.push_back(chapter(name, places, named));
  }
  return all;
}

}  // namespace kcf
