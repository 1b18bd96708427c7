#include "manual/Chapters.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "Assets.h"
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

Chapter chapter(std::string_view name, const std::vector<Place>& places) {
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
  std::vector<Chapter> all;
  for (const std::string_view name : chapterNames) {
    all.push_back(chapter(name, places));
  }
  return all;
}

}  // namespace kcf
