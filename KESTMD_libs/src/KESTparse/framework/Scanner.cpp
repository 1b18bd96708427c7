#include "KESTparse/framework/Scanner.h"

#include <algorithm>
#include <cstring>

namespace KESTparse {
namespace {

/// The first `c` from `begin` to `end`; `end` when there is none.
char* findByte(char* begin, char* end, char c) {
  void* const found =
      begin == end ? nullptr : std::memchr(begin, c, static_cast<std::size_t>(end - begin));
  return found == nullptr ? end : static_cast<char*>(found);
}

/// The star that closes the comment of which `star` is the first; `end` when none does.
char* closingStar(char* star, char* end) {
  while (star != end && (star + 1 == end || star[1] != '/')) {
    star = findByte(std::min(star + 1, end), end, '*');
  }
  return star;
}

/// Blanks all but the line feeds from `begin` to `end`.
void blank(char* begin, char* end) {
  std::replace_if(
      begin, end, [](char c) { return c != '\n'; }, ' ');
}

}  // namespace

bool isWritableName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), isNameCharacter);
}

void blankComments(std::vector<char>& text, std::vector<Span>* comments) {
  char* const begin = text.data();
  char* const end = begin + text.size();
  // Most files have no carriage returns, and the library finds that out fastest.
  for (char* c = findByte(begin, end, '\r'); c != end; c = findByte(c, end, '\r')) {
    *c = ' ';
  }
  const auto find = [end](char* from, char c) { return findByte(std::min(from, end), end, c); };
  const auto blankComment = [begin, comments](char* from, char* to) {
    blank(from, to);
    if (comments != nullptr) {
      comments->push_back(
          {static_cast<std::size_t>(from - begin), static_cast<std::size_t>(to - begin)});
    }
  };
  // A slash that closes a comment may open the next one, so it is looked at again.
  for (char* slash = find(begin, '/'); slash != end;) {
    char* const next = slash + 1;
    if (next == end) {
      return;
    }
    if (*next == '/') {
      char* const stop = find(next, '\n');
      blankComment(slash, stop);
      slash = find(stop, '/');
    } else if (*next == '*') {
      char* const star = closingStar(next, end);
      if (star == end) {
        blankComment(slash, end);
        return;
      }
      char* const closing = star + 1;
      const bool reopens = closing + 1 != end && (closing[1] == '/' || closing[1] == '*');
      blankComment(slash, reopens ? closing : closing + 1);
      slash = reopens ? closing : find(closing + 1, '/');
    } else {
      slash = find(next, '/');
    }
  }
}

ParenthesisSums::ParenthesisSums(std::string_view text) {
  int sum = 0;
  for (std::size_t at = text.find_first_of("()"); at != std::string_view::npos;
       at = text.find_first_of("()", at + 1)) {
    sum += text[at] == '(' ? 1 : -1;
    places_.push_back({at, sum, sum});
  }
  for (std::size_t i = places_.size(); i > 1; --i) {
    places_[i - 2].lowest = std::min(places_[i - 2].lowest, places_[i - 1].lowest);
  }
}

bool ParenthesisSums::closes(std::size_t from, int depth) const {
  const auto next = std::partition_point(places_.begin(), places_.end(),
                                         [from](const Place& place) { return place.at < from; });
  if (next == places_.end()) {
    return false;
  }
  const int before = next == places_.begin() ? 0 : std::prev(next)->sum;
  return next->lowest <= before - depth;
}

}  // namespace KESTparse
