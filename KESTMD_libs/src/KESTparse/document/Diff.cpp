#include "KESTparse/document/Diff.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <unordered_map>
#include <utility>

namespace KESTparse {
namespace {

/// The lines of a text, each with its line feed.
std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t feed = text.find('\n');
    const std::size_t length = feed == std::string_view::npos ? text.size() : feed + 1;
    lines.push_back(text.substr(0, length));
    text.remove_prefix(length);
  }
  return lines;
}

/// Lines as numbers: equal ones have the same.
using Numbers = std::vector<std::uint32_t>;

Numbers numbersOf(const std::vector<std::string_view>& lines,
                  std::unordered_map<std::string_view, std::uint32_t>& known) {
  Numbers numbers;
  numbers.reserve(lines.size());
  for (const std::string_view line : lines) {
    numbers.push_back(known.emplace(line, static_cast<std::uint32_t>(known.size())).first->second);
  }
  return numbers;
}

/// Finds changes by the greedy algorithm of Myers, a stretch at a time: where the texts differ in
/// more than `mostSteps` lines it settles for the way that led farthest, and begins anew there.
class Comparison {
 public:
  Comparison(const Numbers& before, const Numbers& after) : before_(&before), after_(&after) {}

  std::vector<LineChange> run() {
    while (x_ < before_->size() || y_ < after_->size()) {
      stretch();
    }
    return std::move(changes_);
  }

 private:
  static constexpr int mostSteps = 64;

  /// How far the lines agree from `x` and `y` on.
  [[nodiscard]] std::size_t agreement(std::size_t x, std::size_t y) const {
    std::size_t length = 0;
    while (x + length < before_->size() && y + length < after_->size() &&
           (*before_)[x + length] == (*after_)[y + length]) {
      ++length;
    }
    return length;
  }

  /// The places that each number of steps reaches: for each diagonal the farthest line of the text
  /// before, counted from where the stretch begins; -1 where there is no way.
  using Reached = std::vector<std::vector<int>>;

  /// Where one more step enters a diagonal.
  struct Entry {
    int x = -1;
    int from = 0;  ///< the diagonal that it comes from
  };

  static int reachedOn(const Reached& reached, int step, int diagonal) {
    const int place = diagonal + step;
    return std::abs(diagonal) > step
               ? -1
               : reached[static_cast<std::size_t>(step)][static_cast<std::size_t>(place)];
  }

  [[nodiscard]] Entry entryOf(const Reached& reached, int step, int diagonal) const {
    const int deleting = reachedOn(reached, step - 1, diagonal - 1);
    const int inserting = reachedOn(reached, step - 1, diagonal + 1);
    Entry entry;
    if (deleting >= 0 && deleting < width()) {
      entry = {deleting + 1, diagonal - 1};
    }
    if (inserting > entry.x && inserting - diagonal <= height()) {
      entry = {inserting, diagonal + 1};
    }
    return entry;
  }

  [[nodiscard]] int width() const { return static_cast<int>(before_->size() - x_); }
  [[nodiscard]] int height() const { return static_cast<int>(after_->size() - y_); }

  void stretch() {
    Reached reached;
    for (int step = 0;; ++step) {
      reached.emplace_back(2 * static_cast<std::size_t>(step) + 1, -1);
      int best = 0;
      int bestSum = -1;
      for (int diagonal = -step; diagonal <= step; diagonal += 2) {
        int x = step == 0 ? 0 : entryOf(reached, step, diagonal).x;
        if (x < 0) {
          continue;
        }
        const int y = x - diagonal;
        x += static_cast<int>(
            agreement(x_ + static_cast<std::size_t>(x), y_ + static_cast<std::size_t>(y)));
        const int place = diagonal + step;
        reached.back()[static_cast<std::size_t>(place)] = x;
        const int sum = 2 * x - diagonal;
        // Among the farthest the one in the middle takes as much from the one as from the other.
        if (sum > bestSum || (sum == bestSum && std::abs(diagonal) < std::abs(best))) {
          best = diagonal;
          bestSum = sum;
        }
      }
      if (bestSum == width() + height() || step == mostSteps) {
        follow(reached, step, best);
        return;
      }
    }
  }

  /// Notes the changes on the way to the end of `step` on `diagonal`, and goes there.
  void follow(const Reached& reached, int step, int diagonal) {
    const auto place = [this](int x, int onDiagonal) -> LineChange {
      const std::size_t before = x_ + static_cast<std::size_t>(x);
      const std::size_t after = y_ + static_cast<std::size_t>(x - onDiagonal);
      return {{before, before}, {after, after}};
    };
    const LineChange end = place(reachedOn(reached, step, diagonal), diagonal);
    std::vector<LineChange> steps;
    for (; step > 0; --step) {
      const Entry entry = entryOf(reached, step, diagonal);
      LineChange change = place(reachedOn(reached, step - 1, entry.from), entry.from);
      const LineChange behind = place(entry.x, diagonal);
      change.before.end = behind.before.end;
      change.after.end = behind.after.end;
      steps.push_back(change);
      diagonal = entry.from;
    }
    std::reverse(steps.begin(), steps.end());
    for (const LineChange& change : steps) {
      if (!changes_.empty() && changes_.back().before.end == change.before.begin &&
          changes_.back().after.end == change.after.begin) {
        changes_.back().before.end = change.before.end;
        changes_.back().after.end = change.after.end;
      } else {
        changes_.push_back(change);
      }
    }
    x_ = end.before.end;
    y_ = end.after.end;
  }

  const Numbers* before_;
  const Numbers* after_;
  std::size_t x_ = 0;  // where the stretch begins
  std::size_t y_ = 0;
  std::vector<LineChange> changes_;
};

std::vector<LineChange> compare(const std::vector<std::string_view>& before,
                                const std::vector<std::string_view>& after) {
  std::unordered_map<std::string_view, std::uint32_t> known;
  const Numbers numbersBefore = numbersOf(before, known);
  const Numbers numbersAfter = numbersOf(after, known);
  return Comparison(numbersBefore, numbersAfter).run();
}

/// The begin and length of lines in the manner of a hunk's head.
std::string rangeOf(Span lines) {
  const std::size_t first = lines.empty() ? lines.begin : lines.begin + 1;
  return std::to_string(first) + (lines.size() == 1 ? "" : "," + std::to_string(lines.size()));
}

}  // namespace

std::vector<LineChange> changedLines(std::string_view before, std::string_view after) {
  return compare(linesOf(before), linesOf(after));
}

std::vector<Edit> changeEdits(std::string_view before, std::string_view after) {
  const std::vector<std::string_view> linesBefore = linesOf(before);
  const std::vector<std::string_view> linesAfter = linesOf(after);
  const auto bytes = [](std::string_view text, const std::vector<std::string_view>& lines,
                        Span span) -> Span {
    const auto offset = [&](std::size_t line) {
      return line < lines.size() ? static_cast<std::size_t>(lines[line].data() - text.data())
                                 : text.size();
    };
    return {offset(span.begin), offset(span.end)};
  };
  std::vector<Edit> edits;
  for (const LineChange& change : compare(linesBefore, linesAfter)) {
    edits.push_back({bytes(before, linesBefore, change.before),
                     std::string(bytes(after, linesAfter, change.after).in(after))});
  }
  return edits;
}

std::string unifiedDiff(std::string_view before, std::string_view after,
                        std::string_view nameBefore, std::string_view nameAfter) {
  constexpr std::size_t context = 3;
  const std::vector<std::string_view> linesBefore = linesOf(before);
  const std::vector<std::string_view> linesAfter = linesOf(after);
  const std::vector<LineChange> changes = compare(linesBefore, linesAfter);
  std::string diff;
  const auto append = [&diff](char sign, const std::vector<std::string_view>& lines, Span span) {
    for (std::size_t i = span.begin; i < span.end; ++i) {
      diff += sign;
      diff += lines[i];
      if (lines[i].back() != '\n') {
        diff += "\n\\ No newline at end of file\n";
      }
    }
  };
  for (std::size_t i = 0; i < changes.size();) {
    std::size_t last = i;
    while (last + 1 < changes.size() &&
           changes[last + 1].before.begin - changes[last].before.end <= 2 * context) {
      ++last;
    }
    const std::size_t lead = std::min(context, changes[i].before.begin);
    const std::size_t trail = std::min(context, linesBefore.size() - changes[last].before.end);
    const Span hunkBefore{changes[i].before.begin - lead, changes[last].before.end + trail};
    const Span hunkAfter{changes[i].after.begin - lead, changes[last].after.end + trail};
    if (diff.empty()) {
      diff.append("--- ").append(nameBefore).append("\n+++ ").append(nameAfter).append("\n");
    }
    diff += "@@ -" + rangeOf(hunkBefore) + " +" + rangeOf(hunkAfter) + " @@\n";
    std::size_t at = hunkBefore.begin;
    for (; i <= last; ++i) {
      append(' ', linesBefore, {at, changes[i].before.begin});
      append('-', linesBefore, changes[i].before);
      append('+', linesAfter, changes[i].after);
      at = changes[i].before.end;
    }
    append(' ', linesBefore, {at, hunkBefore.end});
  }
  return diff;
}

}  // namespace KESTparse
