/// \file
/// The syntax of lists.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KESTparse {

/// Knows how the text of a list is written.
class ListParser {
 public:
  /// \param itemCount 0 for any number of items, N for exactly N, -N for at most N.
  /// \param nesting 0 for a flat list, 1 for a list of sublists; only the type name tells it.
  explicit ListParser(int itemCount = 0, int nesting = 0)
      : itemCount_(itemCount), nesting_(nesting) {}
  virtual ~ListParser() = default;

  /// What is wrong with `text`, parentheses included, as such a list; empty when it is one.
  [[nodiscard]] virtual std::string fault(std::string_view text) const = 0;
  /// The items of `text`, whose parentheses are known to be the outer ones. The views look into
  /// `text`.
  [[nodiscard]] virtual std::vector<std::string_view> split(std::string_view text) const = 0;
  [[nodiscard]] virtual char separator() const = 0;
  [[nodiscard]] virtual std::unique_ptr<ListParser> clone() const = 0;
  /// The kind of list in the words of the user.
  [[nodiscard]] virtual std::string typeName() const = 0;

  [[nodiscard]] int getItemCount() const { return itemCount_; }

 protected:
  ListParser(const ListParser&) = default;
  ListParser& operator=(const ListParser&) = default;

  int itemCount_;
  int nesting_;
};

/// Lists of `int`, `double` or `std::string` whose items stand between white space.
template <typename T>
class WhiteSpaceListParser : public ListParser {
 public:
  using ListParser::ListParser;
  [[nodiscard]] std::string fault(std::string_view text) const override;
  [[nodiscard]] std::vector<std::string_view> split(std::string_view text) const override;
  [[nodiscard]] char separator() const override { return ' '; }
  [[nodiscard]] std::unique_ptr<ListParser> clone() const override;
  [[nodiscard]] std::string typeName() const override;
};

/// The first item of the list `text` at or behind `position`, which is moved behind it; empty when
/// there is none left. A walk begins at position 1.
std::string_view nextListItem(std::string_view text, std::size_t& position);

}  // namespace KESTparse
