#include "KESTparse/document/Format.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/ListParser.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

constexpr std::size_t mostColumns = 100;
/// A line whose code is wider keeps its comment beside it.
constexpr std::size_t mostAlignedColumns = 72;
/// No schema is as deep; the text of a hostile file must not grow beyond measure.
constexpr std::size_t deepestIndent = 50;

constexpr std::string_view switchOff = "kcf: format off";
constexpr std::string_view switchOn = "kcf: format on";

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

/// The width of a line or of its begin, with tabs to each eighth column.
std::size_t columnsOf(std::string_view line) {
  constexpr std::size_t tabWidth = 8;
  std::size_t columns = 0;
  while (!line.empty()) {
    bool isValid = true;
    const std::size_t length = codePointLength(line, isValid);
    columns = line.front() == '\t' ? (columns / tabWidth + 1) * tabWidth : columns + 1;
    line.remove_prefix(length);
  }
  return columns;
}

struct Comment {
  Span at;
  bool isLine = false;  // reaches to the end of its line by itself
};

/// Comments beside each other.
struct Run {
  std::vector<Comment> comments;
  bool startsLine = false;    // nothing stands before it on its line
  bool endsLine = false;      // nothing stands behind it
  bool isMultiLine = false;   // holds a line feed
  std::string_view indent{};  // of its line, if it holds line feeds

  [[nodiscard]] std::size_t begin() const { return comments.front().at.begin; }
  [[nodiscard]] std::size_t end() const { return comments.back().at.end; }
  [[nodiscard]] bool endsInLineComment() const { return comments.back().isLine; }
};

class Formatter {
 public:
  Formatter(const SyntaxTree& tree, const InputBlock& root)
      : tree_(&tree), text_(tree.text()), blanked_(tree.blanked()), masters_{&root} {
    out_.reserve(text_.size() + text_.size() / 4);
  }

  std::string run() {
    for (NodeId id = 1; id < tree_->nodes().size(); ++id) {
      const SyntaxNode& node = (*tree_)[id];
      closeBefore(node.begin);
      if (node.kind == NodeKind::block) {
        writeHeader(node);
        open_.push_back(id);
        const InputBlock* const parent = masters_.back();
        const int position =
            parent == nullptr ? -1 : parent->getLogicalBlockPosition(node.name().in(text_));
        masters_.push_back(
            position < 0 ? nullptr : &parent->getLogicalBlock(static_cast<std::size_t>(position)));
        isBlockBegin_ = true;
      } else {
        writeTag(node);
      }
    }
    closeBefore(text_.size() + 1);
    writeGap(text_.size(), true);
    if (isOff_) {
      out_ += text_.substr(offBegin_);
      isLineOpen_ = !out_.empty() && out_.back() != '\n';
    }
    if (isLineOpen_) {
      out_ += '\n';
    }
    return aligned();
  }

 private:
  /// A comment behind code, in its column yet to be found.
  struct Trailing {
    std::size_t at;       // in the output; padding goes there
    std::size_t width;    // of the code before it
    std::size_t section;  // comments of one section share a column
    std::size_t owner;    // the comment whose column it takes; itself, or the one above
  };

  // Comments.

  [[nodiscard]] const std::vector<Span>& comments() const { return tree_->comments(); }

  /// The next comment, together with those that begin with its last byte.
  Comment takeComment() {
    Comment comment;
    comment.at.begin = comments()[nextComment_].begin;
    Span part;
    do {
      part = comments()[nextComment_++];
      comment.at.end = part.end;
    } while (isNextCommentBefore(part.end + 1) && comments()[nextComment_].begin == part.end);
    comment.isLine = part.in(text_).starts_with("//");
    const bool isUnclosed = !comment.isLine && !part.in(text_).ends_with("*/");
    comment.isLine = comment.isLine || isUnclosed;
    while (isUnclosed && isWhiteSpace(text_[comment.at.end - 1])) {
      --comment.at.end;
    }
    return comment;
  }

  [[nodiscard]] bool hasFeed(std::size_t begin, std::size_t end) const {
    return text_.substr(begin, end - begin).find('\n') != std::string_view::npos;
  }

  [[nodiscard]] bool isNextCommentBefore(std::size_t end) const {
    return nextComment_ < comments().size() && comments()[nextComment_].begin < end;
  }

  /// The comments beside each other that begin before `end`; there is one.
  Run takeRun(std::size_t from, std::size_t end) {
    Run run;
    run.comments.push_back(takeComment());
    run.startsLine = from == 0 || hasFeed(from, run.begin());
    while (isNextCommentBefore(end) && !hasFeed(run.end(), comments()[nextComment_].begin)) {
      run.comments.push_back(takeComment());
    }
    setFeeds(run);
    const std::size_t next = isNextCommentBefore(end) ? comments()[nextComment_].begin : end;
    run.endsLine = run.end() >= text_.size() || hasFeed(run.end(), std::max(next, run.end()));
    return run;
  }

  void setFeeds(Run& run) const {
    run.isMultiLine = hasFeed(run.begin(), run.end());
    if (run.isMultiLine) {
      const std::string_view line = lineUpTo(run.begin());
      run.indent = line.substr(0, std::min(line.find_first_not_of(" \t"), line.size()));
    }
  }

  [[nodiscard]] std::string_view lineUpTo(std::size_t at) const {
    const std::size_t feed = at == 0 ? std::string_view::npos : text_.rfind('\n', at - 1);
    const std::size_t begin = feed == std::string_view::npos ? 0 : feed + 1;
    return text_.substr(begin, at - begin);
  }

  /// Appends a comment. The lines of one that begins its line keep their distance from it.
  void appendComment(Span comment, const Run& run) {
    std::string_view rest = comment.in(text_);
    for (bool isFirst = true;; isFirst = false) {
      const std::size_t feed = std::min(rest.find('\n'), rest.size());
      std::string_view line = rest.substr(0, feed);
      while (!line.empty() && isBlank(line.back())) {
        line.remove_suffix(1);
      }
      if (!isFirst && run.startsLine && !line.empty()) {
        if (line.starts_with(run.indent)) {
          line.remove_prefix(run.indent.size());
        } else {
          line = trimmed(line);
        }
        indentLine();
      }
      out_ += line;
      if (feed == rest.size()) {
        return;
      }
      out_ += '\n';
      lineBegin_ = out_.size();
      rest.remove_prefix(feed + 1);
    }
  }

  void appendRun(const Run& run) {
    for (std::size_t i = 0; i < run.comments.size(); ++i) {
      out_ += i == 0 ? "" : " ";
      appendComment(run.comments[i].at, run);
    }
    endsInComment_ = run.endsInLineComment();
  }

  // Lines.

  void indentLine() { out_.append(2 * std::min(open_.size() + listDepth_, deepestIndent), ' '); }

  void newLine() {
    if (isLineOpen_) {
      out_ += '\n';
      section_ += breaksSection_ && !hasTrailing_ ? 1 : 0;
    }
    isLineOpen_ = true;
    hasTrailing_ = false;
    breaksSection_ = false;
    endsInComment_ = false;
    lastTrailing_ = noTrailing;
    lineBegin_ = out_.size();
  }

  /// Begins a line for what stands at `at` of the text; blank lines before it become one.
  void startLine(std::size_t at, bool mayHaveBlank = true) {
    const std::string_view gap = text_.substr(end_, at - std::min(at, end_));
    const bool hasBlank =
        mayHaveBlank && !isBlockBegin_ && std::count(gap.begin(), gap.end(), '\n') > 1;
    newLine();
    if (hasBlank) {
      out_ += '\n';
      lineBegin_ = out_.size();
      ++section_;
    }
    isBlockBegin_ = false;
  }

  void addTrailing(const Run& run) {
    if (hasTrailing_) {
      out_ += ' ';
    } else {
      lastTrailing_ = run.isMultiLine ? noTrailing : trailing_.size();
      lastTrailingAt_ = run.begin();
      trailing_.push_back({out_.size(), columnsOf(std::string_view(out_).substr(lineBegin_)),
                           section_, trailing_.size()});
    }
    hasTrailing_ = true;
    appendRun(run);
  }

  /// Writes what stands alone on its lines.
  void addOwnLine(Run run) {
    run.startsLine = true;
    const std::size_t above = lastTrailing_;
    const bool goesOn =
        above != noTrailing && !run.isMultiLine &&
        std::count(text_.begin() + static_cast<std::ptrdiff_t>(end_),
                   text_.begin() + static_cast<std::ptrdiff_t>(run.begin()), '\n') == 1 &&
        columnsOf(lineUpTo(run.begin())) == columnsOf(lineUpTo(lastTrailingAt_));
    startLine(run.begin());
    if (goesOn) {
      hasTrailing_ = true;
      lastTrailing_ = trailing_.size();
      lastTrailingAt_ = run.begin();
      trailing_.push_back({out_.size(), 0, section_, trailing_[above].owner});
    } else {
      indentLine();
    }
    appendRun(run);
  }

  /// Writes the comments of `run`, which stand between blocks and tags.
  void place(const Run& run) {
    if (!run.startsLine && isLineOpen_ && !endsInComment_) {
      addTrailing(run);
    } else {
      addOwnLine(run);
    }
    end_ = run.end();
  }

  /// Writes the comments up to `next`, where a block or tag begins or ends. What stands before it
  /// on its line is left to its line and returned.
  std::vector<Run> writeGap(std::size_t next, bool closes) {
    while (isNextCommentBefore(next)) {
      const Run run = takeRun(end_, next);
      if (isOff_) {
        end_ = run.end();
        if (isSwitch(run, switchOn)) {
          const std::size_t begin = run.begin() - lineUpTo(run.begin()).size();
          out_ += text_.substr(offBegin_, begin - offBegin_);
          isOff_ = false;
          isLineOpen_ = false;
          isBlockBegin_ = true;
          addOwnLine(run);
        }
        continue;
      }
      const bool staysBefore = run.startsLine && !run.endsLine && !run.isMultiLine && !closes;
      if (staysBefore) {
        return {run};
      }
      const bool switchesOff = isSwitch(run, switchOff);
      if (switchesOff) {
        lastTrailing_ = noTrailing;
      }
      place(run);
      if (switchesOff) {
        isOff_ = true;
        offBegin_ = std::min(run.end() + 1, text_.size());
        if (isLineOpen_) {
          out_ += '\n';
          isLineOpen_ = false;
        }
        ++section_;
      }
    }
    return {};
  }

  /// Whether `run` switches the formatter, alone on its line.
  [[nodiscard]] bool isSwitch(const Run& run, std::string_view words) const {
    return run.startsLine && run.comments.size() == 1 && isSwitch(run.comments.front().at, words);
  }

  [[nodiscard]] bool isSwitch(Span comment, std::string_view words) const {
    const std::string_view text = comment.in(text_);
    return text.starts_with("//") && trimmed(text.substr(2)) == words;
  }

  // Blocks and tags.

  /// Begins the line of `node` and writes its name, with the comments that stand before it on its
  /// line and behind its name. \return comments behind the name of a block that must go behind the
  /// brace.
  std::vector<Run> startNode(const SyntaxNode& node) {
    const std::vector<Run> before = writeGap(node.begin, false);
    std::vector<Run> within;
    for (std::size_t from = node.nameEnd; isNextCommentBefore(node.mark);) {
      within.push_back(takeRun(from, node.mark));
      from = within.back().end();
    }
    if (isOff_) {
      return {};
    }
    const bool mustGo = std::any_of(within.begin(), within.end(), [](const Run& run) {
      return run.isMultiLine || run.endsInLineComment();
    });
    if (mustGo && node.kind == NodeKind::tag) {
      for (const Run& run : before) {
        addOwnLine(run);
      }
      for (const Run& run : within) {
        end_ = run.begin();
        addOwnLine(run);
      }
      end_ = node.begin;
      startName(node, {});
      return {};
    }
    startName(node, before);
    if (mustGo) {
      return within;
    }
    for (const Run& run : within) {
      out_ += ' ';
      appendRun(run);
    }
    return {};
  }

  void startName(const SyntaxNode& node, const std::vector<Run>& before) {
    startLine(before.empty() ? node.begin : before.front().begin());
    indentLine();
    for (const Run& run : before) {
      appendRun(run);
      out_ += ' ';
    }
    out_ += node.name().in(text_);
  }

  void writeHeader(const SyntaxNode& node) {
    const std::vector<Run> moved = startNode(node);
    if (!isOff_) {
      out_ += " {";
      breaksSection_ = true;
    }
    end_ = node.mark + std::size_t{1};
    if (moved.empty()) {
      return;
    }
    open_.push_back(0);
    isBlockBegin_ = true;
    for (const Run& run : moved) {
      end_ = run.begin();
      place(run);
    }
    open_.pop_back();
    end_ = node.mark + std::size_t{1};
  }

  void writeTag(const SyntaxNode& node) {
    startNode(node);
    const Span value = tree_->valueOf(node);
    if (value.empty()) {
      end_ = node.mark + std::size_t{1};
      if (!isOff_) {
        out_ += " =";
      }
      return;
    }
    end_ = value.end;
    if (isOff_) {
      skipComments(value.end);
      return;
    }
    out_ += " = ";
    if (isNextCommentBefore(value.begin)) {
      const Run run = takeRun(node.mark, value.begin);
      appendRun(run);
      out_ += ' ';
    }
    if (blanked_[value.end - 1] != ')' || !writeList(node, value)) {
      skipComments(value.end);
      writeAsItIs(value.in(text_));
    }
  }

  void skipComments(std::size_t end) {
    while (isNextCommentBefore(end)) {
      ++nextComment_;
    }
  }

  void writeAsItIs(std::string_view value) {
    const std::size_t feed = value.rfind('\n');
    section_ += feed == std::string_view::npos ? 0 : 1;
    out_ += value;
    if (feed != std::string_view::npos) {
      lineBegin_ = out_.size() - (value.size() - feed - 1);
      breaksSection_ = true;
    }
  }

  /// Closes the blocks that end before `at`.
  void closeBefore(std::size_t at) {
    while (!open_.empty() && (*tree_)[open_.back()].end <= at) {
      const std::size_t brace = (*tree_)[open_.back()].end - std::size_t{1};
      writeGap(brace, true);
      open_.pop_back();
      masters_.pop_back();
      if (!isOff_) {
        startLine(brace, false);
        indentLine();
        out_ += '}';
        breaksSection_ = true;
      }
      isBlockBegin_ = false;
      end_ = brace + 1;
    }
  }

  // Lists.

  /// An item of a list, or a comment in it.
  struct Piece {
    Span item;
    Run comment;  // has one comment, or none
    std::size_t width = 0;

    [[nodiscard]] bool isComment() const { return !comment.comments.empty(); }
  };

  /// Writes a value that its tag takes as a list. \return false when it is none.
  bool writeList(const SyntaxNode& node, Span value) {
    const InputBlock* const block = masters_.back();
    const int position =
        block == nullptr ? -1 : block->getLogicalTagPosition(node.name().in(text_));
    if (position < 0 || !takesAsList(block->getLogicalTag(static_cast<std::size_t>(position)),
                                     value.in(blanked_))) {
      return false;
    }
    const std::size_t opening = blanked_.find('(', value.begin);
    for (std::size_t i = nextComment_; i < comments().size() && comments()[i].begin < value.end;
         ++i) {
      if (comments()[i].begin < opening || isSwitch(comments()[i], switchOff)) {
        return false;
      }
    }
    const std::vector<Piece> pieces = piecesOf({opening + 1, value.end - 1});
    out_ += text_.substr(value.begin, opening + 1 - value.begin);
    const bool isPlain = std::none_of(pieces.begin(), pieces.end(), [](const Piece& piece) {
      return piece.comment.startsLine || piece.comment.endsLine || piece.comment.isMultiLine;
    });
    std::size_t width = columnsOf(std::string_view(out_).substr(lineBegin_)) + pieces.size();
    for (const Piece& piece : pieces) {
      width += piece.width;
    }
    if (isPlain && width <= mostColumns) {
      for (std::size_t i = 0; i < pieces.size(); ++i) {
        out_ += i == 0 ? "" : " ";
        out_ += pieces[i].item.in(text_);
      }
      out_ += ')';
      return true;
    }
    fill(pieces);
    return true;
  }

  std::vector<Piece> piecesOf(Span inner) {
    std::vector<Piece> pieces;
    for (std::size_t at = inner.begin;;) {
      bool hasFeed = false;
      for (; at < inner.end && (isBlank(text_[at]) || text_[at] == '\n'); ++at) {
        hasFeed = hasFeed || text_[at] == '\n';
      }
      if (!pieces.empty() && pieces.back().isComment()) {
        pieces.back().comment.endsLine = hasFeed;
      }
      if (at == inner.end) {
        return pieces;
      }
      Piece piece;
      piece.item = {at, at};
      if (isNextCommentBefore(at + 1)) {
        piece.comment.comments = {takeComment()};
        piece.comment.startsLine = hasFeed;
        setFeeds(piece.comment);
        piece.item.end = piece.comment.end();
      } else {
        while (piece.item.end < inner.end && !isWhiteSpace(blanked_[piece.item.end])) {
          ++piece.item.end;
        }
      }
      piece.width = countCodePoints(piece.item.in(text_));
      at = piece.item.end;
      pieces.push_back(std::move(piece));
    }
  }

  /// Writes the pieces of a list line by line, and its closing parenthesis.
  void fill(const std::vector<Piece>& pieces) {
    ++section_;
    ++listDepth_;
    std::size_t column = mostColumns;
    for (const Piece& piece : pieces) {
      const Run& comment = piece.comment;
      const bool mustBreak =
          piece.isComment() && (comment.isMultiLine || comment.endsInLineComment());
      if (mustBreak && !comment.startsLine) {
        addTrailing(comment);
      } else {
        if (column + 1 + piece.width > mostColumns || comment.startsLine) {
          newLine();
          indentLine();
          column = out_.size() - lineBegin_ + piece.width;
        } else {
          out_ += ' ';
          column += 1 + piece.width;
        }
        if (piece.isComment()) {
          appendRun(comment);
        } else {
          out_ += piece.item.in(text_);
        }
      }
      if (mustBreak || comment.endsLine) {
        column = mostColumns;
      }
    }
    --listDepth_;
    newLine();
    indentLine();
    out_ += ')';
    ++section_;
    breaksSection_ = true;
  }

  /// The output with each trailing comment in its column.
  std::string aligned() {
    if (trailing_.empty()) {
      return std::move(out_);
    }
    std::vector<std::size_t> columns(section_ + 1, 0);
    for (const Trailing& comment : trailing_) {
      if (comment.width <= mostAlignedColumns) {
        columns[comment.section] = std::max(columns[comment.section], comment.width);
      }
    }
    std::string result;
    result.reserve(out_.size() + 8 * trailing_.size());
    std::size_t at = 0;
    for (const Trailing& comment : trailing_) {
      const Trailing& owner = trailing_[comment.owner];
      const std::size_t column =
          2 + (owner.width > mostAlignedColumns ? owner.width : columns[owner.section]);
      result.append(out_, at, comment.at - at);
      result.append(column - comment.width, ' ');
      at = comment.at;
    }
    return result.append(out_, at);
  }

  static constexpr std::size_t noTrailing = SIZE_MAX;

  const SyntaxTree* tree_;
  std::string_view text_;
  std::string_view blanked_;
  std::vector<NodeId> open_;
  std::vector<const InputBlock*> masters_;  // of the open blocks, the root first; null if unknown
  std::size_t nextComment_ = 0;
  std::size_t end_ = 0;  // of what was written last, in the text

  std::string out_;
  std::size_t lineBegin_ = 0;   // of the last line of the output
  bool isLineOpen_ = false;     // whether that line waits for its line feed
  bool isBlockBegin_ = true;    // no blank line may follow
  bool endsInComment_ = false;  // nothing may follow on the line
  bool breaksSection_ = false;  // the line ends a section unless it has a comment
  bool hasTrailing_ = false;    // the line has a comment behind its code
  std::size_t listDepth_ = 0;

  std::vector<Trailing> trailing_;
  std::size_t section_ = 0;
  std::size_t lastTrailing_ = noTrailing;  // on the line above, for a comment that goes on below
  std::size_t lastTrailingAt_ = 0;         // in the text

  bool isOff_ = false;
  std::size_t offBegin_ = 0;
};

/// The first line of `text`, with its line feed.
std::string_view firstLine(std::string_view text) {
  return text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
}

std::string withoutBlanks(std::string_view line) {
  std::string kept;
  std::copy_if(line.begin(), line.end(), std::back_inserter(kept),
               [](char c) { return c != ' ' && c != '\t' && c != '\r' && c != '\n'; });
  return kept;
}

/// Adds an edit, line by line as far as its lines only differ in blanks.
void splitLines(std::string_view text, const Edit& edit, std::vector<Edit>& edits) {
  Span at = edit.at;
  std::string_view fresh = edit.text;
  while (!at.empty() && !fresh.empty()) {
    const std::string_view before = firstLine(at.in(text));
    const std::string_view after = firstLine(fresh);
    if (withoutBlanks(before) != withoutBlanks(after)) {
      break;
    }
    edits.push_back({{at.begin, at.begin + before.size()}, std::string(after)});
    at.begin += before.size();
    fresh.remove_prefix(after.size());
  }
  if (!at.empty() || !fresh.empty()) {
    edits.push_back({at, std::string(fresh)});
  }
}

}  // namespace

std::string formatted(const SyntaxTree& tree, const InputBlock& root) {
  return Formatter(tree, root).run();
}

std::vector<Edit> formatEdits(const SyntaxTree& tree, const InputBlock& root, Span range) {
  std::vector<Edit> edits;
  for (const Edit& edit : changeEdits(tree.text(), formatted(tree, root))) {
    splitLines(tree.text(), edit, edits);
  }
  std::erase_if(edits, [range](const Edit& edit) {
    return edit.at.end < range.begin || edit.at.begin > range.end;
  });
  return edits;
}

}  // namespace KESTparse
