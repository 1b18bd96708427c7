/// \file
/// HTML that is written element by element; a text can never become markup.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kcf {

class Html {
 public:
  using Attributes = std::initializer_list<std::pair<std::string_view, std::string_view>>;

  /// Opens an element, which `close` closes.
  Html& open(std::string_view name, Attributes attributes = {});
  Html& close();
  Html& text(std::string_view text);
  /// An element that holds nothing but a text.
  Html& leaf(std::string_view name, std::string_view text, Attributes attributes = {});

  /// What was written; all elements are closed.
  [[nodiscard]] std::string take();

 private:
  std::string out_;
  std::vector<std::string> open_;
};

/// A table whose columns with a `#` before the title hold numbers.
void writeTable(Html& html, std::string_view caption, const std::vector<std::string>& titles,
                const std::vector<std::vector<std::string>>& rows);

}  // namespace kcf
