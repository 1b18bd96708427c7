#include "KESTparse/base/Suggestion.h"

#include <algorithm>
#include <utility>

#include "KESTparse/base/Conversions.h"

namespace KESTparse {
namespace {

/// The words of a name in alphabetical order.
std::vector<std::string> sortedWords(std::string_view name) {
  std::vector<std::string> words = split("_-", name);
  std::sort(words.begin(), words.end());
  return words;
}

std::string withoutDigits(std::string_view name) {
  std::string rest(name);
  std::erase_if(rest, [](char c) { return c >= '0' && c <= '9'; });
  return rest;
}

}  // namespace

std::size_t editDistance(std::string_view a, std::string_view b, std::size_t limit) {
  const std::size_t difference = a.size() > b.size() ? a.size() - b.size() : b.size() - a.size();
  if (difference > limit) {
    return difference;
  }
  // Three rows of the table of distances between the beginnings of the two texts.
  std::vector<std::size_t> beforeLast(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) {
    row[j] = j;
  }
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::swap(beforeLast, last);
    std::swap(last, row);
    row[0] = i;
    std::size_t least = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
      }
      least = std::min(least, row[j]);
    }
    if (least > limit) {
      return least;
    }
  }
  return row[b.size()];
}

std::string_view nearestName(std::string_view written, const std::vector<std::string_view>& known) {
  const std::string wanted = toUpper(written);
  constexpr std::size_t third = 3;
  std::size_t least = std::max<std::size_t>(written.size() / third, 1) + 1;
  std::string_view nearest;
  for (const std::string_view name : known) {
    const std::size_t distance = editDistance(wanted, toUpper(name), least);
    // A name of one or two letters is like every other.
    if (distance < least && distance < std::max(name.size(), written.size())) {
      least = distance;
      nearest = name;
    }
  }
  if (!nearest.empty()) {
    return nearest;
  }
  const std::vector<std::string> words = sortedWords(wanted);
  for (const std::string_view name : known) {
    if (words.size() > 1 && sortedWords(toUpper(name)) == words) {
      return name;
    }
  }
  return {};
}

std::string_view nearestGivenName(std::string_view written,
                                  const std::vector<std::string_view>& known) {
  const std::string_view nearest = nearestName(written, known);
  if (nearest.empty() || withoutDigits(nearest) != withoutDigits(written)) {
    return nearest;
  }
  const std::size_t distance = editDistance(written, nearest, written.size());
  const auto isAsNear = [written, nearest, distance](std::string_view name) {
    return name != nearest && editDistance(written, name, distance) <= distance;
  };
  return std::any_of(known.begin(), known.end(), isAsNear) ? std::string_view() : nearest;
}

std::string_view withoutQuotes(std::string_view name) {
  const bool isQuoted = name.size() > 1 && name.front() == name.back() &&
                        (name.front() == '"' || name.front() == '\'');
  return isQuoted ? name.substr(1, name.size() - 2) : name;
}

std::string perhaps(std::string_view written, const std::vector<std::string_view>& known) {
  const std::string_view bare = withoutQuotes(written);
  const bool isQuoted =
      bare != written && std::find(known.begin(), known.end(), bare) != known.end();
  const std::string_view meant = isQuoted ? bare : nearestGivenName(written, known);
  return meant.empty() ? std::string()
                       : " (perhaps '" + std::string(meant) + "'" +
                             (isQuoted ? ", without the quotes)" : ")");
}

std::string_view longerName(std::string_view written, const std::vector<std::string_view>& known) {
  constexpr std::size_t shortest = 3;
  const std::vector<std::string> pieces = split("_-", toUpper(written));
  const auto isLonger = [&pieces](std::string_view name) {
    std::size_t next = 0;
    for (const std::string& word : split("_-", toUpper(name))) {
      next += next < pieces.size() && word.starts_with(pieces[next]) ? 1 : 0;
    }
    return next == pieces.size();
  };
  if (written.size() < shortest || std::count_if(known.begin(), known.end(), isLonger) != 1) {
    return {};
  }
  return *std::find_if(known.begin(), known.end(), isLonger);
}

}  // namespace KESTparse
