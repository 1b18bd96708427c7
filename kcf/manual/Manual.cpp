#include "manual/Manual.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/Scanner.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Example.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "ManualAssets.h"

namespace KESTparse {
namespace {

constexpr std::string_view manualName = "KCF reference";

std::string escaped(std::string_view text) {
  std::string html;
  for (const char c : text) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += c;
    }
  }
  return html;
}

/// A text of the schema, with the signs of a printed text.
std::string prose(std::string_view text) {
  std::string signs = withSigns(std::string(text));
  replaceAll(signs, "<=", "≤");
  replaceAll(signs, ">=", "≥");
  return escaped(signs);
}

/// A name or a value; a long name may be broken behind its underscores.
std::string code(std::string_view text) {
  std::string html = escaped(text);
  replaceAll(html, "_", "_<wbr>");
  return "<code>" + html + "</code>";
}

/// A unit with its exponents raised: both "^{-1}" and "^(1/3)" are exponents.
std::string unitHtml(std::string_view unit) {
  std::string html;
  while (!unit.empty()) {
    const std::size_t caret = std::min(unit.find('^'), unit.size());
    html += escaped(unit.substr(0, caret));
    unit.remove_prefix(caret);
    if (unit.empty()) {
      break;
    }
    unit.remove_prefix(1);
    const char open = unit.empty() ? '\0' : unit.front();
    const std::size_t end = unit.find(open == '{' ? '}' : ')');
    if ((open == '{' || open == '(') && end != std::string_view::npos) {
      html += "<sup>" + escaped(unit.substr(1, end - 1)) + "</sup>";
      unit.remove_prefix(end + 1);
    } else {
      html += "^";
    }
  }
  return html;
}

std::string words(const std::vector<std::string>& values, std::string_view separator) {
  std::string html;
  for (const std::string& value : values) {
    html += (html.empty() ? "" : std::string(separator)) + code(value);
  }
  return html;
}

std::string pageOf(const Place& place) {
  std::string name = place.path == "/" ? std::string(place.block->getName()) : place.path.substr(1);
  std::replace(name.begin(), name.end(), '/', '.');
  return name + ".html";
}

/// The anchor of a tag on the page of its block.
std::string anchorOf(std::string_view tag) {
  std::string anchor = "tag-" + std::string(tag);
  std::replace(anchor.begin(), anchor.end(), ' ', '-');
  return anchor;
}

std::string tagLink(std::string_view tag) {
  return "<a href=\"#" + anchorOf(tag) + "\">" + code(tag) + "</a>";
}

std::string descriptionOf(const InputBlock& block) {
  std::ostringstream text;
  block.getDescription(text);
  return text.str();
}

/// More on a block; not a snippet that shows it.
std::string longDescriptionOf(const InputBlock& block) {
  std::ostringstream text;
  block.getLongDescription(text);
  return text.str().starts_with(std::string(block.getName()) + " {") ? std::string() : text.str();
}

std::string requirement(const InputTag& tag, const TagTraits& traits) {
  if (!tag.isMandatoryBySchema() && !refusesItsDefault(tag, traits)) {
    return "optional";
  }
  const bool isConditional =
      std::any_of(traits.rules.begin(), traits.rules.end(),
                  [&tag](const TagRule& rule) { return isRequirement(rule, tag); });
  return isConditional ? "required on condition" : "required";
}

std::string kindHtml(const InputTag& tag, ValueKind kind) {
  const std::string form = formOf(kind);
  return escaped(tag.getTypeName() + (form.empty() ? "" : ": " + form)) +
         (tag.isRepeatable() ? "; may be given more than once" : "");
}

/// What the value must satisfy by itself.
std::string domainHtml(const InputTag& tag, const TagTraits& traits) {
  std::vector<std::string> parts;
  if (tag.isRestricted()) {
    parts.push_back("one of " + words(allowedValuesOf(tag), ", "));
  } else if (!traits.entries.empty()) {
    parts.push_back("items out of " + words(traits.entries, ", "));
  }
  const bool isList =
      traits.itemCount != 0 || !traits.entries.empty() || !traits.constraint.empty();
  const std::string own =
      isList ? std::string(traits.constraint) : traits.value->getConstraintDescription();
  if (!own.empty()) {
    parts.insert(parts.begin(), prose(own));
  }
  std::string html;
  for (const std::string& part : parts) {
    html += (html.empty() ? "" : "<br>") + part;
  }
  return html;
}

class ManualWriter {
 public:
  ManualWriter(const InputBlock& root, std::filesystem::path folder)
      : root_(&root), places_(placesOf(root)), folder_(std::move(folder)) {}

  void write() const {
    std::error_code fault;
    std::filesystem::create_directories(folder_, fault);
    if (fault) {
      throw std::runtime_error("making the folder '" + folder_.string() +
                               "' failed: " + fault.message());
    }
    writeFile("style.css", style);
    writeFile("search.js", search);
    writeFile("names.js", "window.kcfNames = " + names() + ";\n");
    writeFile("index.html", page(std::string(manualName), index(), ""));
    for (const Place& place : places_) {
      writeFile(pageOf(place),
                page(place.path + " – " + std::string(manualName), topic(place), place.path));
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

  /// What the search looks through.
  [[nodiscard]] std::string names() const {
    nlohmann::json all = nlohmann::json::array();
    for (const Place& place : places_) {
      const std::string page = pageOf(place);
      all.push_back({{"name", place.block->getName()},
                     {"path", place.path},
                     {"page", page},
                     {"help", withSigns(descriptionOf(*place.block))},
                     {"isTag", false}});
      for (std::size_t i = 0; i < place.block->getLogicalNumTags(); ++i) {
        const InputTag& tag = place.block->getLogicalTag(i);
        all.push_back({{"name", tag.getName()},
                       {"path", place.path},
                       {"page", page + "#" + anchorOf(tag.getName())},
                       {"help", withSigns(std::string(tag.getDescription()))},
                       {"isTag", true}});
      }
    }
    return all.dump(0);
  }

  /// A page around `content`; the tree shows the way to the block at `path`.
  [[nodiscard]] std::string page(const std::string& title, const std::string& content,
                                 const std::string& path) const {
    std::ostringstream out;
    out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>"
        << escaped(title)
        << "</title>\n<link rel=\"stylesheet\" href=\"style.css\">\n"
           "<script src=\"names.js\" defer></script>\n<script src=\"search.js\" defer></script>\n"
           "</head>\n<body>\n<input type=\"checkbox\" id=\"menu\" aria-label=\"Show all blocks\">\n"
           "<header>\n<a class=\"home\" href=\"index.html\">"
        << manualName
        << "</a>\n<label for=\"menu\">Blocks</label>\n<div class=\"search\">\n"
           "<input id=\"search\" type=\"search\" placeholder=\"Search blocks and tags\" "
           "aria-label=\"Search blocks and tags\" autocomplete=\"off\" spellcheck=\"false\">\n"
           "<ol id=\"hits\" hidden></ol>\n</div>\n</header>\n<nav aria-label=\"All blocks\">\n";
    writeTree({root_, "/"}, path, out);
    out << "</nav>\n<main>\n" << content << "</main>\n</body>\n</html>\n";
    return out.str();
  }

  /// The blocks from `place` down, open on the way to `current`.
  static void writeTree(const Place& place, const std::string& current, std::ostream& out) {
    const std::string link = "<a href=\"" + pageOf(place) + "\"" +
                             (place.path == current ? " aria-current=\"page\">" : ">") +
                             escaped(place.block->getName()) + "</a>";
    const std::size_t count = place.block->getLogicalNumBlocks();
    if (count == 0) {
      out << link << "\n";
      return;
    }
    constexpr std::size_t shallow = 7;  // the root and the domain always stand open
    const bool isOnTheWay = place.path == "/" || current == place.path ||
                            current.starts_with(place.path + "/") || place.path.size() <= shallow;
    out << "<details" << (isOnTheWay ? " open" : "") << "><summary>" << link
        << "</summary>\n<ul>\n";
    for (std::size_t i = 0; i < count; ++i) {
      const InputBlock& child = place.block->getLogicalBlock(i);
      out << "<li>";
      writeTree({&child, pathOf(place.path, child)}, current, out);
      out << "</li>\n";
    }
    out << "</ul>\n</details>\n";
  }

  [[nodiscard]] std::string index() const {
    std::size_t numTags = 0;
    for (const Place& place : places_) {
      numTags += place.block->getLogicalNumTags();
    }
    std::ostringstream out;
    out << "<h1>" << manualName << "</h1>\n<p>A command file holds nested blocks, and blocks hold "
        << "tags of the form <code>name = value</code>. These pages show all " << places_.size()
        << " blocks and their " << numTags
        << " tags. Search for a name, or pick a block.</p>\n"
           "<noscript><p>The search needs JavaScript; the tree of blocks does not.</p></noscript>\n"
           "<h2>All blocks</h2>\n<div class=\"overview\">\n";
    writeOverview({root_, "/"}, out);
    out << "</div>\n";
    return out.str();
  }

  static void writeOverview(const Place& place, std::ostream& out) {
    out << "<ul><li><a href=\"" << pageOf(place) << "\">" << escaped(place.block->getName())
        << "</a> <span class=\"help\">" << prose(descriptionOf(*place.block)) << "</span>\n";
    for (std::size_t i = 0; i < place.block->getLogicalNumBlocks(); ++i) {
      const InputBlock& child = place.block->getLogicalBlock(i);
      writeOverview({&child, pathOf(place.path, child)}, out);
    }
    out << "</li></ul>\n";
  }

  [[nodiscard]] std::string topic(const Place& place) const {
    const InputBlock& block = *place.block;
    std::ostringstream out;
    writeWay(place, out);
    out << "<h1>" << escaped(block.getName()) << "</h1>\n";
    if (const InputBlock* const parent = block.getLogicalParent(); parent != nullptr) {
      out << "<p class=\"flags\">Stands " << occurrence(block) << " in " << code(parent->getName())
          << ".</p>\n";
    }
    out << "<p>" << prose(descriptionOf(block)) << "</p>\n";
    if (const std::string more = longDescriptionOf(block); !more.empty()) {
      out << "<p>" << prose(more) << "</p>\n";
    }
    writeSubBlocks(place, out);
    writeTags(block, out);
    out << "<h2 id=\"example\">Example</h2>\n<pre><code>" << escaped(exampleOf(place))
        << "</code></pre>\n";
    return out.str();
  }

  /// Links to the blocks around the one at `place`.
  void writeWay(const Place& place, std::ostream& out) const {
    std::vector<const Place*> around;
    for (const Place& other : places_) {
      if (other.path == "/" ? place.path != "/" : place.path.starts_with(other.path + "/")) {
        around.push_back(&other);
      }
    }
    out << "<p class=\"way\">";
    for (const Place* other : around) {
      out << "<a href=\"" << pageOf(*other) << "\">" << escaped(other->block->getName())
          << "</a> / ";
    }
    out << escaped(place.block->getName()) << "</p>\n";
  }

  static void writeSubBlocks(const Place& place, std::ostream& out) {
    if (place.block->getLogicalNumBlocks() == 0) {
      return;
    }
    out << "<h2 id=\"blocks\">Blocks in it</h2>\n<dl>\n";
    for (std::size_t i = 0; i < place.block->getLogicalNumBlocks(); ++i) {
      const InputBlock& child = place.block->getLogicalBlock(i);
      out << "<dt><a href=\"" << pageOf({&child, pathOf(place.path, child)}) << "\">"
          << escaped(child.getName()) << "</a> <span class=\"flags\">" << occurrence(child)
          << "</span></dt>\n<dd>" << prose(descriptionOf(child)) << "</dd>\n";
    }
    out << "</dl>\n";
  }

  static void writeTags(const InputBlock& block, std::ostream& out) {
    if (block.getLogicalNumTags() == 0) {
      return;
    }
    std::map<std::string_view, std::vector<std::string_view>> dependents;
    for (std::size_t i = 0; i < block.getLogicalNumTags(); ++i) {
      const InputTag& tag = block.getLogicalTag(i);
      for (const TagRule& rule : traitsOf(tag).rules) {
        if (rule.kind != TagRule::Kind::exclusive) {
          dependents[rule.other].push_back(tag.getName());
        }
      }
    }
    out << "<h2 id=\"tags\">Tags</h2>\n<table>\n<thead><tr><th scope=\"col\">Tag</th>"
           "<th scope=\"col\">Type</th><th scope=\"col\">Unit</th><th scope=\"col\">Default</th>"
           "<th scope=\"col\">Range and values</th><th scope=\"col\">Condition</th>"
           "<th scope=\"col\">Description</th></tr></thead>\n<tbody>\n";
    for (std::size_t i = 0; i < block.getLogicalNumTags(); ++i) {
      const InputTag& tag = block.getLogicalTag(i);
      writeTag(tag, dependents[tag.getName()], out);
    }
    out << "</tbody>\n</table>\n";
  }

  static void writeTag(const InputTag& tag, const std::vector<std::string_view>& dependents,
                       std::ostream& out) {
    const TagTraits traits = traitsOf(tag);
    const std::string need = requirement(tag, traits);
    const auto cell = [&out](std::string_view label, const std::string& html) {
      out << "<td data-label=\"" << label << "\"" << (html.empty() ? " class=\"none\">" : ">")
          << html << "</td>\n";
    };
    out << "<tr id=\"" << anchorOf(tag.getName()) << R"("><th scope="row">)"
        << tagLink(tag.getName()) << "<span class=\"need" << (need == "optional" ? "" : " must")
        << "\">" << need << "</span></th>\n";
    cell("Type", kindHtml(tag, traits.kind));
    cell("Unit", unitHtml(tag.getUnit()));
    cell("Default", tag.getDefaultValue().empty() || refusesItsDefault(tag, traits)
                        ? ""
                        : code(tag.getDefaultValue()));
    cell("Range and values", domainHtml(tag, traits));
    std::string condition;
    for (const TagRule& rule : traits.rules) {
      condition += (condition.empty() ? "" : "<br>") + sentenceOf(rule, tag, tagLink, code);
    }
    cell("Condition", condition);
    std::string help = prose(tag.getDescription());
    const auto addRemark = [&help](const std::string& remark) {
      help += (help.empty() ? "" : "<br>") + ("<span class=\"remark\">" + remark + "</span>");
    };
    if (!isWritableName(tag.getName())) {
      addRemark(
          "Cannot be written in a command file: its name holds a character that no name has.");
    }
    if (!dependents.empty()) {
      std::string links;
      for (const std::string_view dependent : dependents) {
        links += (links.empty() ? "" : ", ") + tagLink(dependent);
      }
      addRemark("Decides on " + links);
    }
    cell("Description", help);
    out << "</tr>\n";
  }

  const InputBlock* root_;
  std::vector<Place> places_;
  std::filesystem::path folder_;
};

}  // namespace

void writeManual(const InputBlock& root, const std::filesystem::path& folder) {
  ManualWriter(root, folder).write();
}

}  // namespace KESTparse

namespace kcf {

Verb manualVerb() {
  return {"manual",
          "Know the vocabulary",
          "Write the reference manual as HTML pages that need no server",
          R"(There is a page for each block, with a table of its tags, and a search over all
of them. Open index.html in a browser; the pages can be put on a memory stick,
sent in an archive or printed.)",
          {{.name = "--output",
            .help = "Folder for the pages; made if need be",
            .value = "DIR",
            .letter = 'o',
            .required = true,
            .isPath = true}},
          [](const Arguments& arguments) {
            KESTparse::writeManual(KESTparse::KestrixInputRoot(), arguments.value("--output"));
            return status::done;
          },
          {{"Write the manual and open it", "kcf manual -o manual && xdg-open manual/index.html"}}};
}

}  // namespace kcf
