#include "preview/Setup.h"

#include <algorithm>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace kcf {
namespace {

constexpr std::string_view nameCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";

/// Blanks the comments and carriage returns; offsets stay as they are.
std::string blanked(std::string_view text) {
  std::string out(text);
  std::replace(out.begin(), out.end(), '\r', ' ');
  for (std::size_t i = out.find('/'); i != std::string::npos; i = out.find('/', i)) {
    std::size_t end = i;
    if (out.compare(i, 2, "//") == 0) {
      end = std::min(out.find('\n', i), out.size());
    } else if (out.compare(i, 2, "/*") == 0) {
      const std::size_t close = out.find("*/", i + 2);
      end = close == std::string::npos ? out.size() : close + 2;
    } else {
      ++i;
      continue;
    }
    std::replace_if(
        out.begin() + static_cast<std::ptrdiff_t>(i),
        out.begin() + static_cast<std::ptrdiff_t>(end), [](char c) { return c != '\n'; }, ' ');
    i = end;
  }
  return out;
}

class Reading {
 public:
  Reading(std::string_view text, std::string path, SetupBlock& root, std::vector<Notice>& notices)
      : text_(blanked(text)), path_(std::move(path)), open_{&root}, notices_(&notices) {}

  void run() {
    while (true) {
      skipSpace();
      if (at_ == text_.size()) {
        break;
      }
      step();
    }
    if (open_.size() > 1) {
      tell(open_.back()->line, "the block '" + open_.back()->name + "' is not closed",
           "close it with '}'");
    }
  }

 private:
  void step() {
    const std::size_t line = line_;
    if (text_[at_] == '}') {
      ++at_;
      if (open_.size() == 1) {
        tell(line, "a closing brace that closes nothing", "remove it, or add the block it closes");
      } else {
        open_.pop_back();
      }
      return;
    }
    const std::size_t end = std::min(text_.find_first_not_of(nameCharacters, at_), text_.size());
    const std::string name = text_.substr(at_, end - at_);
    at_ = end;
    skipSpace();
    const char sign = at_ == text_.size() ? '\0' : text_[at_];
    if (name.empty() || (sign != '{' && sign != '=')) {
      tell(line, name.empty() ? "a name is expected here" : "'" + name + "' has no value",
           "write tags as 'name = value' and blocks as 'NAME { ... }'");
      skipLine(line);
      return;
    }
    ++at_;
    if (sign == '{') {
      openBlock(name, line);
    } else {
      readTag(name, line);
    }
  }

  void openBlock(const std::string& name, std::size_t line) {
    SetupBlock& parent = *open_.back();
    const KESTparse::InputBlock* schema = nullptr;
    if (parent.schema != nullptr) {
      const int position = parent.schema->getLogicalBlockPosition(name);
      if (position >= 0) {
        schema = &parent.schema->getLogicalBlock(static_cast<std::size_t>(position));
      } else {
        tell(line, "there is no block '" + name + "' in '" + parent.name + "'", "");
      }
    }
    parent.blocks.push_back(SetupBlock{name, line, schema, &parent, {}, {}});
    open_.push_back(&parent.blocks.back());
  }

  void readTag(const std::string& name, std::size_t line) {
    SetupBlock& block = *open_.back();
    const std::size_t begin = at_;
    for (int depth = 0; at_ < text_.size() && (text_[at_] != '\n' || depth > 0); ++at_) {
      depth += text_[at_] == '(' ? 1 : 0;
      depth -= text_[at_] == ')' && depth > 0 ? 1 : 0;
      line_ += text_[at_] == '\n' ? 1 : 0;
    }
    SetupTag tag{name,
                 std::string(KESTparse::trim(std::string_view(text_).substr(begin, at_ - begin))),
                 line, nullptr};
    if (block.schema != nullptr) {
      const int position = block.schema->getLogicalTagPosition(name);
      if (position >= 0) {
        tag.schema = &block.schema->getLogicalTag(static_cast<std::size_t>(position));
      } else {
        tell(line, "there is no tag '" + name + "' in '" + block.name + "'", "");
      }
    }
    block.tags.push_back(std::move(tag));
  }

  void skipSpace() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t' || text_[at_] == '\n')) {
      line_ += text_[at_] == '\n' ? 1 : 0;
      ++at_;
    }
  }

  /// Goes on behind the line, but not when that line has been left already.
  void skipLine(std::size_t line) {
    if (line_ != line) {
      return;
    }
    at_ = std::min(text_.find_first_of("\n}", at_ + (text_[at_] == '}' ? 0 : 1)), text_.size());
  }

  void tell(std::size_t line, std::string message, std::string help) {
    notices_->push_back(
        {Notice::Severity::error, std::move(message), std::move(help), "", path_, line, ""});
  }

  std::string text_;
  std::string path_;
  std::vector<SetupBlock*> open_;
  std::vector<Notice>* notices_;
  std::size_t at_ = 0;
  std::size_t line_ = 1;
};

/// Whether the conditions around a tag let it be used in `block`.
bool isUsed(const KESTparse::InputTag& tag, const SetupBlock& block) {
  const auto rules = KESTparse::traitsOf(tag).rules;
  return std::all_of(rules.begin(), rules.end(), [&block](const KESTparse::TagRule& rule) {
    return rule.kind != KESTparse::TagRule::Kind::usedIf ||
           rule.condition->isMet(block.value(rule.other));
  });
}

}  // namespace

std::vector<std::string> listItems(std::string_view text) {
  return KESTparse::split(" \t\n\r(),", text);
}

const SetupBlock* SetupBlock::find(std::string_view path) const {
  const std::size_t slash = path.find('/');
  for (const SetupBlock& block : blocks) {
    if (block.name == path.substr(0, slash)) {
      return slash == std::string_view::npos ? &block : block.find(path.substr(slash + 1));
    }
  }
  return nullptr;
}

std::vector<const SetupBlock*> SetupBlock::all(std::string_view blockName) const {
  std::vector<const SetupBlock*> found;
  for (const SetupBlock& block : blocks) {
    if (block.name == blockName) {
      found.push_back(&block);
    }
  }
  return found;
}

const SetupTag* SetupBlock::tag(std::string_view tagName) const {
  const auto it = std::find_if(tags.begin(), tags.end(),
                               [tagName](const SetupTag& tag) { return tag.name == tagName; });
  return it == tags.end() ? nullptr : &*it;
}

std::string SetupBlock::value(std::string_view tagName) const {
  if (const SetupTag* const given = tag(tagName); given != nullptr) {
    return given->value;
  }
  if (schema != nullptr) {
    const int position = schema->getLogicalTagPosition(tagName);
    if (position >= 0) {
      return schema->getLogicalTag(static_cast<std::size_t>(position)).getDefaultValue();
    }
  }
  return "";
}

std::vector<std::string> SetupBlock::items(std::string_view tagName) const {
  return listItems(value(tagName));
}

std::vector<double> SetupBlock::numbers(std::string_view tagName) const {
  std::vector<double> numbers;
  for (const std::string& item : items(tagName)) {
    const auto number = KESTparse::extractDouble(item);
    if (number.ok) {
      numbers.push_back(number.value);
    }
  }
  return numbers;
}

std::vector<const KESTparse::InputTag*> SetupBlock::defaults() const {
  std::vector<const KESTparse::InputTag*> found;
  for (std::size_t i = 0; schema != nullptr && i < schema->getLogicalNumTags(); ++i) {
    const KESTparse::InputTag& prototype = schema->getLogicalTag(i);
    if (!prototype.getDefaultValue().empty() && tag(prototype.getName()) == nullptr &&
        isUsed(prototype, *this)) {
      found.push_back(&prototype);
    }
  }
  return found;
}

std::string SetupBlock::path() const {
  return parent == nullptr ? "" : parent->path() + "/" + name;
}

std::unique_ptr<SetupBlock> readSetup(std::string_view text, const std::string& path,
                                      const KESTparse::InputBlock& root,
                                      std::vector<Notice>& notices) {
  auto setup = std::make_unique<SetupBlock>();
  setup->schema = &root;
  Reading(text, path, *setup, notices).run();
  return setup;
}

}  // namespace kcf
