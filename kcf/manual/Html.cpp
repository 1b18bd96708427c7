#include "manual/Html.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

#include "Assets.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace kcf {

using KESTparse::replaceAll;

std::string rendered(std::string_view name, const kainjow::mustache::data& values) {
  kainjow::mustache::mustache page{std::string(asset("pages/" + std::string(name)))};
  std::string html = page.render(values);
  if (!page.is_valid()) {
    throw std::runtime_error("the template '" + std::string(name) + "': " + page.error_message());
  }
  return html;
}

std::string prose(std::string_view text) {
  std::string signs = KESTparse::withSigns(std::string(text));
  replaceAll(signs, "<=", "≤");
  replaceAll(signs, ">=", "≥");
  return escaped(signs);
}

std::string breakable(std::string_view text) {
  std::string html;
  for (const char c : text) {
    html += escaped(std::string_view(&c, 1));
    html += c == '_' || c == '/' ? "<wbr>" : "";
  }
  return html;
}

std::string code(std::string_view text) {
  return "<code>" + breakable(text) + "</code>";
}

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

std::string codes(const std::vector<std::string>& values, std::string_view separator) {
  std::string html;
  for (const std::string& value : values) {
    html += (html.empty() ? "" : std::string(separator)) + code(value);
  }
  return html;
}

std::string pageOf(const KESTparse::Place& place) {
  std::string name = place.path == "/" ? std::string(place.block->getName()) : place.path.substr(1);
  std::replace(name.begin(), name.end(), '/', '.');
  return name + ".html";
}

namespace {

std::string anchorWith(std::string_view prefix, std::string_view tag) {
  std::string anchor = std::string(prefix) + std::string(tag);
  std::replace(anchor.begin(), anchor.end(), ' ', '-');
  return anchor;
}

}  // namespace

std::string anchorOf(std::string_view tag) {
  return anchorWith("tag-", tag);
}

std::string nameAnchor(std::string_view tag) {
  return anchorWith("name-", tag);
}

std::string tagLink(std::string_view tag) {
  return "<a href=\"#" + anchorOf(tag) + "\">" + code(tag) + "</a>";
}

std::string slug(std::string_view heading) {
  std::string anchor;
  bool isInMarkup = false;
  for (const char c : heading) {
    isInMarkup = c == '<' || (isInMarkup && c != '>');
    if (isInMarkup || c == '>') {
      continue;
    }
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    } else if (!anchor.empty() && anchor.back() != '-') {
      anchor += '-';
    }
  }
  return anchor.substr(0, anchor.find_last_not_of('-') + 1);
}

}  // namespace kcf
