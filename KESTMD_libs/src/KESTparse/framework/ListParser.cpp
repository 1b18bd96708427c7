#include "KESTparse/framework/ListParser.h"

#include <algorithm>
#include <cstdlib>
#include <type_traits>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/Conversions.h"

namespace KESTparse {
namespace {

bool separatesItems(char c) {
  // Nearly all characters are decided by the first comparison.
  return c <= ' ' && (c == ' ' || c == '\t' || c == '\n' || c == '\r');
}

/// The fault of one item; empty when it is none.
template <typename T>
std::string itemFault(std::string_view item) {
  if constexpr (std::is_same_v<T, int>) {
    return integerSyntaxFault(item);
  } else if constexpr (std::is_same_v<T, double>) {
    return realSyntaxFault(item);
  } else {
    return item.empty() ? "Empty list item" : "";
  }
}

/// Moves `position` behind the next item of the list `text` if that is a real number of the form of
/// nearly all: it need not be cut out to be tested.
template <typename T>
bool passPlainItem(std::string_view text, std::size_t& position) {
  if constexpr (!std::is_same_v<T, double>) {
    return false;
  } else {
    const std::size_t end = text.size() - 1;
    std::size_t begin = position;
    while (begin < end && separatesItems(text[begin])) {
      ++begin;
    }
    const std::size_t length = plainRealLength(text.substr(begin, end - begin));
    if (length == 0 || (begin + length < end && !separatesItems(text[begin + length]))) {
      return false;
    }
    position = begin + length;
    return true;
  }
}

/// The two words for an item of a list.
struct ItemWords {
  const char* singular;
  const char* plural;
};

template <typename T>
constexpr ItemWords itemWords() {
  if constexpr (std::is_same_v<T, int>) {
    return {"integer", "integers"};
  } else if constexpr (std::is_same_v<T, double>) {
    return {"real", "reals"};
  } else {
    return {"string", "strings"};
  }
}

}  // namespace

std::string_view nextListItem(std::string_view text, std::size_t& position) {
  if (text.size() < 3) {
    return {};
  }
  const std::size_t end = text.size() - 1;
  while (position < end && separatesItems(text[position])) {
    ++position;
  }
  const std::size_t begin = position;
  while (position < end && !separatesItems(text[position])) {
    ++position;
  }
  return text.substr(begin, position - begin);
}

template <typename T>
std::vector<std::string_view> WhiteSpaceListParser<T>::split(std::string_view text) const {
  std::vector<std::string_view> items;
  std::size_t position = 1;
  for (std::string_view item = nextListItem(text, position); !item.empty();
       item = nextListItem(text, position)) {
    items.push_back(item);
  }
  return items;
}

template <typename T>
std::string WhiteSpaceListParser<T>::fault(std::string_view text) const {
  if (text.size() >= 3) {
    const std::string_view inner = text.substr(1, text.size() - 2);
    const std::size_t brace = std::min(inner.find('('), inner.find(')'));
    if (brace != std::string_view::npos) {
      return std::string("A brace ") + inner[brace] +
             " is not allowed in the whitespace separated list";
    }
  }
  std::size_t position = 1;
  if (nextListItem(text, position).empty()) {
    return "Empty list found: '" + std::string(text) + "'";
  }
  if (itemCount_ != 0) {
    const std::size_t found = split(text).size();
    const auto wanted = static_cast<std::size_t>(std::abs(itemCount_));
    if (itemCount_ > 0 ? found != wanted : found > wanted) {
      return (itemCount_ > 0 ? "Expected " : "Expected up to ") + std::to_string(wanted) +
             (wanted == 1 ? " item" : " items") + " in list but found " + std::to_string(found);
    }
  }
  position = 1;
  for (std::size_t number = 1;; ++number) {
    if (passPlainItem<T>(text, position)) {
      continue;
    }
    const std::string_view item = nextListItem(text, position);
    if (item.empty()) {
      return {};
    }
    const std::string fault = itemFault<T>(item);
    if (!fault.empty()) {
      return "List item nr. " + std::to_string(number) + " is invalid: " + fault;
    }
  }
}

template <typename T>
std::unique_ptr<ListParser> WhiteSpaceListParser<T>::clone() const {
  return std::make_unique<WhiteSpaceListParser<T>>(*this);
}

template <typename T>
std::string WhiteSpaceListParser<T>::typeName() const {
  ASSERT(nesting_ == 0 || nesting_ == 1, "not yet implemented ... ");
  std::string name =
      separator() == ',' ? "comma separated list of " : "whitespace separated list of ";
  const ItemWords words = itemWords<T>();
  if (itemCount_ == 0) {
    return name + (nesting_ == 1 ? "sublist of " : "") + words.plural;
  }
  const int count = std::abs(itemCount_);
  return name + (nesting_ == 1 ? "sublists of " : "") + (itemCount_ < 0 ? "up to " : "") +
         std::to_string(count) + " " + (count == 1 ? words.singular : words.plural);
}

template class WhiteSpaceListParser<int>;
template class WhiteSpaceListParser<double>;
template class WhiteSpaceListParser<std::string>;

}  // namespace KESTparse
