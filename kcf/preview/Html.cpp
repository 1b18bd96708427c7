#include "preview/Html.h"

#include <stdexcept>

#include "Markup.h"

namespace kcf {

Html& Html::open(std::string_view name, Attributes attributes) {
  out_ += '<';
  out_ += name;
  for (const auto& [key, value] : attributes) {
    out_ += ' ';
    out_ += key;
    out_ += "=\"";
    out_ += escaped(value);
    out_ += '"';
  }
  out_ += '>';
  open_.emplace_back(name);
  return *this;
}

Html& Html::close() {
  if (open_.empty()) {
    throw std::logic_error("no element is open");
  }
  out_ += "</" + open_.back() + ">";
  open_.pop_back();
  // Lines break between blocks, where a break shows nowhere.
  out_ += open_.size() < 3 ? "\n" : "";
  return *this;
}

Html& Html::text(std::string_view text) {
  out_ += escaped(text);
  return *this;
}

Html& Html::leaf(std::string_view name, std::string_view text, Attributes attributes) {
  return open(name, attributes).text(text).close();
}

std::string Html::take() {
  while (!open_.empty()) {
    close();
  }
  return std::exchange(out_, {});
}

void writeTable(Html& html, std::string_view caption, const std::vector<std::string>& titles,
                const std::vector<std::vector<std::string>>& rows) {
  const auto isNumber = [&titles](std::size_t column) { return titles[column].starts_with('#'); };
  html.open("div",
            {{"class", "table"}, {"tabindex", "0"}, {"role", "region"}, {"aria-label", caption}});
  html.open("table").leaf("caption", caption);
  html.open("thead").open("tr");
  for (std::size_t i = 0; i < titles.size(); ++i) {
    html.leaf("th", std::string_view(titles[i]).substr(isNumber(i) ? 1 : 0),
              {{"scope", "col"}, {"class", isNumber(i) ? "number" : "word"}});
  }
  html.close().close().open("tbody");
  for (const auto& row : rows) {
    html.open("tr");
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i == 0) {
        html.leaf("th", row[i], {{"scope", "row"}});
      } else {
        html.leaf("td", row[i], {{"class", isNumber(i) ? "number" : "word"}});
      }
    }
    html.close();
  }
  html.close().close().close();
}

}  // namespace kcf
