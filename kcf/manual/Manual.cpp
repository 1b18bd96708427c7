#include "manual/Manual.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <kainjow/mustache.hpp>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "Assets.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/document/Codes.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/RuleTable.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "Setups.h"
#include "manual/BlockPage.h"
#include "manual/Chapters.h"
#include "manual/Html.h"
#include "manual/MessagePages.h"

namespace kcf {
namespace {

#ifndef KESTRIX_VERSION
#define KESTRIX_VERSION "unversioned"
#endif

using kainjow::mustache::data;
using KESTparse::InputBlock;
using KESTparse::InputTag;
using KESTparse::Place;

/// A page of the manual before the frame is put around it.
struct Page {
  std::string file;
  std::string title;
  std::string html;
  std::string path = {};  ///< of the block that it is about
};

/// The text of a command file in which the lines of blocks have anchors.
std::string withAnchors(std::string_view text) {
  std::set<std::size_t> anchored;
  for (const auto& [line, path] : openedBlocks(text)) {
    anchored.insert(line);
  }
  std::string html;
  std::istringstream lines{std::string(text)};
  std::size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    html += anchored.contains(number)
                ? "<span id=\"L" + std::to_string(number) + "\">" + escaped(line) + "</span>\n"
                : escaped(line) + "\n";
  }
  return html;
}

class ManualWriter {
 public:
  ManualWriter(const KESTparse::KestrixInputRoot& root, std::filesystem::path folder)
      : root_(&root),
        places_(placesOf(root)),
        chapters_(chapters(places_)),
        setups_(setups()),
        codes_(toldCodes(root)),
        folder_(std::move(folder)) {}

  void write() {
    std::error_code fault;
    std::filesystem::create_directories(folder_, fault);
    if (fault) {
      throw std::runtime_error("making the folder '" + folder_.string() +
                               "' failed: " + fault.message());
    }
    addPages();
    writeFile("style.css", asset("pages/style.css"));
    writeFile("page.js", asset("pages/page.js"));
    writeFile("search.js", asset("pages/search.js"));
    writeFile("names.js", "window.kcfNames = " + names() + ";\n");
    for (const Asset* picture : assetsIn("pictures")) {
      writeFile(std::string(picture->name.substr(picture->name.find('/') + 1)), picture->content);
    }
    for (const Page& page : pages_) {
      writeFile(page.file, framed(page));
    }
  }

 private:
  void writeFile(const std::string& name, std::string_view content) const {
    const std::filesystem::path path = folder_ / name;
    std::ofstream out(path, std::ios::binary);
    out << content << std::flush;
    if (!out) {
      throw std::runtime_error("writing '" + path.string() + "' failed");
    }
  }

  void addPages() {
    pages_.push_back({"index.html", "", index()});
    for (const Chapter& chapter : chapters_) {
      pages_.push_back({chapter.name + ".html", chapter.title, chapter.html});
    }
    data overview;
    overview.set("tree", overviewOf({root_, "/"}));
    pages_.push_back({"blocks.html", "All blocks", rendered("blocks", overview)});
    pages_.push_back({"a-z.html", "All tags, A to Z", tagIndex()});
    addMessages();
    pages_.push_back({"codes.html", "Codes of kcf check", codesHtml(codes_, places_)});
    addExamples();
    for (const Place& place : places_) {
      const std::string title =
          place.path == "/" ? std::string(place.block->getName()) : place.path;
      pages_.push_back({pageOf(place), title, rendered("block", dataOf(place)), place.path});
    }
    pages_.push_back({"book.html", "All on one page", book()});
  }

  /// A page in its frame.
  [[nodiscard]] std::string framed(const Page& page) const {
    data frame;
    frame.set("title", (page.title.empty() ? "" : page.title + " – ") + "KCF manual");
    frame.set("version", KESTRIX_VERSION);
    frame.set("content", page.html);
    frame.set("tree", treeOf({root_, "/"}, page.path));
    data guide(data::type::list);
    for (const Chapter& chapter : chapters_) {
      guide.push_back(navigationRow(chapter.name + ".html", chapter.title, page.file));
    }
    frame.set("chapters", guide);
    data lists(data::type::list);
    for (const auto& [file, name] : {std::pair("blocks.html", "All blocks"),
                                     {"a-z.html", "All tags, A to Z"},
                                     {"messages.html", "What the rules say"},
                                     {"codes.html", "Codes of kcf check"},
                                     {"examples.html", "Examples"},
                                     {"book.html", "All on one page"}}) {
      lists.push_back(navigationRow(file, name, page.file));
    }
    frame.set("lists", lists);
    return rendered("page", frame);
  }

  static data navigationRow(const std::string& file, const std::string& name,
                            const std::string& current) {
    data row = linkData(file, name);
    row.set("current", data(file == current));
    return row;
  }

  static data linkData(const std::string& page, const std::string& name,
                       const std::string& help = {}) {
    data row;
    row.set("page", page);
    row.set("name", name);
    row.set("help", help);
    return row;
  }

  /// The blocks from `place` down, as far as they are on the way to `current` or stand beside it.
  static std::string treeOf(const Place& place, const std::string& current) {
    std::string html = "<ul>\n";
    for (const InputBlock& child : place.block->logicalBlocks()) {
      const Place at{&child, pathOf(place.path, child)};
      const bool isOnTheWay = at.path == current || current.starts_with(at.path + "/");
      const bool isDomain = place.path == "/";
      html += "<li><a href=\"" + pageOf(at) + "\"" +
              (at.path == current ? " aria-current=\"page\">" : ">") + escaped(child.getName()) +
              "</a>";
      if ((isOnTheWay || isDomain) && child.getLogicalNumBlocks() > 0) {
        html += "\n" + treeOf(at, current);
      }
      html += "</li>\n";
    }
    return html + "</ul>\n";
  }

  static std::string overviewOf(const Place& place) {
    const InputBlock& block = *place.block;
    std::string html = "<ul><li><a href=\"" + pageOf(place) + "\">" + escaped(block.getName()) +
                       "</a>" + (block.isRepeatable() ? "*" : "") +
                       (block.isMandatory() ? " <span class=\"must\">needed</span>" : "") +
                       " <span class=\"help\">" + prose(descriptionOf(block)) + "</span>\n";
    for (const InputBlock& child : block.logicalBlocks()) {
      html += overviewOf({&child, pathOf(place.path, child)});
    }
    return html + "</li></ul>\n";
  }

  [[nodiscard]] std::string index() const {
    std::size_t numTags = 0;
    for (const Place& place : places_) {
      numTags += place.block->getLogicalNumTags();
    }
    data page;
    page.set("numBlocks", std::to_string(places_.size()));
    page.set("numTags", std::to_string(numTags));
    data begin(data::type::list);
    data understand(data::type::list);
    constexpr std::size_t numFirst = 4;
    for (const Chapter& chapter : chapters_) {
      (&chapter < &chapters_[numFirst] ? begin : understand)
          .push_back(linkData(chapter.name + ".html", chapter.title, chapter.lead));
    }
    page.set("begin", begin);
    page.set("understand", understand);
    data top(data::type::list);
    for (const Place& place : places_) {
      if (std::count(place.path.begin(), place.path.end(), '/') <= 2 && place.path != "/") {
        top.push_back(linkData(pageOf(place), std::string(place.block->getName()),
                               prose(descriptionOf(*place.block))));
      }
    }
    page.set("top", top);
    return rendered("index", page);
  }

  [[nodiscard]] std::string tagIndex() const {
    std::map<char, std::map<std::string, std::vector<const Place*>>> letters;
    for (const Place& place : places_) {
      for (const InputTag& tag : place.block->logicalTags()) {
        const std::string name(tag.getName());
        letters[KESTparse::toUpper(name).front()][name].push_back(&place);
      }
    }
    data rows(data::type::list);
    for (const auto& [letter, tags] : letters) {
      data tagRows(data::type::list);
      for (const auto& [name, places] : tags) {
        data links(data::type::list);
        for (const Place* place : places) {
          data link;
          link.set("page", pageOf(*place) + "#" + anchorOf(name));
          link.set("path", breakable(place->path));
          links.push_back(link);
        }
        data row;
        row.set("anchor", nameAnchor(name));
        row.set("name", breakable(name));
        row.set("places", links);
        tagRows.push_back(row);
      }
      data row;
      row.set("letter", std::string(1, letter));
      row.set("tags", tagRows);
      rows.push_back(row);
    }
    data page;
    page.set("letters", rows);
    return rendered("a-z", page);
  }

  void addMessages() {
    data blocks(data::type::list);
    for (const Place& place : places_) {
      const std::string anchor = stem(pageOf(place));
      const std::string rules = rulesHtml(*place.block, pageOf(place), anchor + "-");
      if (!rules.empty()) {
        data row;
        row.set("id", anchor);
        row.set("page", pageOf(place) + "#rules");
        row.set("path", breakable(place.path));
        row.set("rules", rules);
        blocks.push_back(row);
      }
    }
    data page;
    page.set("blocks", blocks);
    pages_.push_back({"messages.html", "What the rules say", rendered("messages", page)});
  }

  void addExamples() {
    data all(data::type::list);
    std::vector<Page> made;
    for (const Setup& setup : setups_) {
      data row = linkData("example-" + setup.name + ".html", setup.name, setup.help);
      row.set("isStart", data(setup.isStart));
      all.push_back(row);
      data files(data::type::list);
      for (const Setup::File& file : setup.files) {
        data one;
        one.set("file", file.name);
        one.set("id", slug(file.name));
        one.set("text", file.name == "setup.kcf" ? withAnchors(file.text) : escaped(file.text));
        files.push_back(one);
      }
      row.set("files", files);
      made.push_back({"example-" + setup.name + ".html", setup.name, rendered("example", row)});
    }
    data page;
    page.set("examples", all);
    pages_.push_back({"examples.html", "Examples", rendered("examples", page)});
    pages_.insert(pages_.end(), made.begin(), made.end());
  }

  [[nodiscard]] data dataOf(const Place& place) const {
    BlockContext context{&places_, &supplement_, {}};
    for (const Setup& setup : setups_) {
      for (const auto& [line, path] : openedBlocks(setup.files.front().text)) {
        if (path == place.path) {
          context.uses.push_back(
              {"example-" + setup.name + ".html#L" + std::to_string(line), setup.name});
          break;
        }
      }
    }
    data page = blockData(place, context);
    data told(data::type::list);
    for (const Chapter& chapter : chapters_) {
      if (std::find(chapter.blocks.begin(), chapter.blocks.end(), place.path) !=
          chapter.blocks.end()) {
        told.push_back(linkData(chapter.name + ".html", chapter.title));
      }
    }
    page.set("hasChapters", data(!told.is_empty_list()));
    page.set("chapters", told);
    return page;
  }

  [[nodiscard]] bool isInBook(const Page& page) const {
    return !page.path.empty() || page.file == "codes.html" ||
           std::any_of(chapters_.begin(), chapters_.end(),
                       [&](auto& chapter) { return chapter.name + ".html" == page.file; });
  }

  /// Chapters, codes and blocks behind each other; anchors are told apart by the names of their
  /// pages.
  [[nodiscard]] std::string book() const {
    std::set<std::string> files;
    for (const Page& page : pages_) {
      if (isInBook(page)) {
        files.insert(page.file);
      }
    }
    data parts(data::type::list);
    for (const Page& page : pages_) {
      if (isInBook(page)) {
        data part;
        part.set("id", stem(page.file));
        part.set("name", breakable(page.title));
        part.set("content", inBook(page, files));
        parts.push_back(part);
      }
    }
    data all;
    all.set("parts", parts);
    all.set("version", KESTRIX_VERSION);
    return rendered("book", all);
  }

  static std::string stem(const std::string& file) { return file.substr(0, file.rfind('.')); }

  static std::string inBook(const Page& page, const std::set<std::string>& files) {
    const std::string self = stem(page.file);
    std::string html;
    for (std::size_t at = 0; at < page.html.size();) {
      constexpr std::string_view id = " id=\"";
      constexpr std::string_view href = " href=\"";
      constexpr std::string_view label = " for=\"";
      const std::string_view rest = std::string_view(page.html).substr(at);
      const std::string_view found = rest.starts_with(id)      ? id
                                     : rest.starts_with(href)  ? href
                                     : rest.starts_with(label) ? label
                                                               : std::string_view();
      if (found.empty()) {
        html += page.html[at++];
        continue;
      }
      at += found.size();
      const std::size_t end = page.html.find('"', at);
      const std::string value = page.html.substr(at, end - at);
      html += found;
      html += found != href ? fmt::format("{}--{}", self, value) : linkInBook(value, self, files);
      at = end;
    }
    return html;
  }

  /// Links to what is in the book lead there, others to their pages.
  static std::string linkInBook(const std::string& link, const std::string& self,
                                const std::set<std::string>& files) {
    const std::size_t hash = std::min(link.find('#'), link.size());
    const std::string file = hash == 0 ? self + ".html" : link.substr(0, hash);
    if (!files.contains(file)) {
      return link;
    }
    return "#" + stem(file) + (hash < link.size() ? "--" + link.substr(hash + 1) : "");
  }

  /// What the search looks through.
  [[nodiscard]] std::string names() const {
    nlohmann::json all = nlohmann::json::array();
    for (const Chapter& chapter : chapters_) {
      all.push_back({{"kind", "chapter"},
                     {"name", chapter.title},
                     {"page", chapter.name + ".html"},
                     {"help", chapter.lead}});
    }
    for (const Setup& setup : setups_) {
      all.push_back({{"kind", "example"},
                     {"name", setup.name},
                     {"page", "example-" + setup.name + ".html"},
                     {"help", setup.help}});
    }
    for (const auto& [facts, stop] : codes_) {
      all.push_back({{"kind", "code"},
                     {"name", facts->name},
                     {"page", "codes.html#" + std::string(facts->name)},
                     {"help", facts->summary},
                     {"more", std::string(facts->meaning) + " " + stop}});
    }
    for (const Place& place : places_) {
      const std::string page = pageOf(place);
      all.push_back({{"kind", "block"},
                     {"name", place.block->getName()},
                     {"path", place.path},
                     {"page", page},
                     {"help", KESTparse::withSigns(descriptionOf(*place.block))}});
      for (const InputTag& tag : place.block->logicalTags()) {
        addNames(place, tag, page, all);
      }
      addRules(place, page, all);
    }
    return all.dump(0);
  }

  static void addRules(const Place& place, const std::string& page, nlohmann::json& all) {
    for (const KESTparse::RuleFacts& rule : rulesOf(*place.block)) {
      all.push_back({{"kind", "rule"},
                     {"name", KESTparse::ruleCode(place.block->getName(), rule.name)},
                     {"path", place.path},
                     {"page", page + "#" + ruleAnchor(rule.name)},
                     {"help", KESTparse::withoutValues(rule.sentence)},
                     {"more", KESTparse::withoutValues(rule.text)}});
    }
  }

  void addNames(const Place& place, const InputTag& tag, const std::string& page,
                nlohmann::json& all) const {
    const std::string link = page + "#" + anchorOf(tag.getName());
    all.push_back({{"kind", "tag"},
                   {"name", tag.getName()},
                   {"path", place.path},
                   {"page", link},
                   {"help", KESTparse::withSigns(tagDescription(place, tag, supplement_))}});
    std::vector<std::string> choices = allowedValuesOf(tag);
    const std::vector<std::string> entries = traitsOf(tag).entries;
    choices.insert(choices.end(), entries.begin(), entries.end());
    for (const std::string& choice : choices) {
      if (choice != "yes" && choice != "no" && choice != "on" && choice != "off") {
        all.push_back({{"kind", "choice"},
                       {"name", choice},
                       {"path", place.path},
                       {"tag", tag.getName()},
                       {"page", link},
                       {"help", supplement_.meaning(place.path, tag.getName(), choice)}});
      }
    }
  }

  const KESTparse::KestrixInputRoot* root_;
  std::vector<Place> places_;
  std::vector<Chapter> chapters_;
  std::vector<Setup> setups_;
  std::vector<ToldCode> codes_;
  Supplement supplement_;
  std::filesystem::path folder_;
  std::vector<Page> pages_;
};

}  // namespace

void writeManual(const KESTparse::KestrixInputRoot& root, const std::filesystem::path& folder) {
  ManualWriter(root, folder).write();
}

Verb manualVerb() {
  return {"manual",
          "Know the vocabulary",
          "Write the manual as HTML pages that need no server",
          R"(A guide in chapters, a page for each block with a table of its tags, whole
setups, and a search over all of them. Open index.html in a browser; the pages
can be put on a memory stick, sent in an archive or printed.)",
          {{.name = "--output",
            .help = "Folder for the pages; made if need be",
            .value = "DIR",
            .letter = 'o',
            .required = true,
            .isPath = true}},
          [](const Arguments& arguments) {
            writeManual(KESTparse::KestrixInputRoot(), arguments.value("--output"));
            return status::done;
          },
          {{"Write the manual and open it", "kcf manual -o manual && xdg-open manual/index.html"}}};
}

}  // namespace kcf
