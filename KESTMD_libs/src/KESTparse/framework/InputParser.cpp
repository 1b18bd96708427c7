#include "KESTparse/framework/InputParser.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <memory>
#include <ostream>
#include <string_view>
#include <vector>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/Logger.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputTag.h"

namespace KESTparse {
namespace {

/// The first `c` from `begin` to `end`; `end` when there is none.
char* findByte(char* begin, char* end, char c) {
  void* const found =
      begin == end ? nullptr : std::memchr(begin, c, static_cast<std::size_t>(end - begin));
  return found == nullptr ? end : static_cast<char*>(found);
}

/// How many bytes `in` holds from here on; 0 when that cannot be told, as of a pipe.
std::size_t remainingSize(std::istream& in) {
  const auto here = in.tellg();
  const auto end = in.seekg(0, std::ios::end).tellg();
  in.clear();
  in.seekg(here);
  in.clear();
  return end > here ? static_cast<std::size_t>(end - here) : 0;
}

/// Reads all of `in`, with blanks for carriage returns.
std::vector<char> readText(std::istream& in) {
  std::vector<char> text(200000);
  std::size_t size = 0;
  while (in.read(text.data() + size, static_cast<std::streamsize>(text.size() - size))) {
    size = text.size();
    // One byte more than expected shows the end of the file without another step.
    text.resize(size + std::max(size / 2, remainingSize(in) + 1));
  }
  text.resize(size + static_cast<std::size_t>(in.gcount()));
  // Most files have none, and the library finds that out fastest.
  char* const end = text.data() + text.size();
  for (char* c = findByte(text.data(), end, '\r'); c != end; c = findByte(c, end, '\r')) {
    *c = ' ';
  }
  return text;
}

/// Blanks all but the line feeds from `begin` to `end`.
void blank(char* begin, char* end) {
  std::replace_if(
      begin, end, [](char c) { return c != '\n'; }, ' ');
}

/// Blanks the comments; lines and columns stay as they are.
void blankComments(std::vector<char>& text) {
  char* const end = text.data() + text.size();
  const auto find = [end](char* from, char c) { return findByte(std::min(from, end), end, c); };
  // A slash that closes a comment may open the next one, so it is looked at again.
  for (char* slash = find(text.data(), '/'); slash != end;) {
    char* const next = slash + 1;
    if (next == end) {
      return;
    }
    if (*next == '/') {
      char* const stop = find(next, '\n');
      blank(slash, stop);
      slash = find(stop, '/');
    } else if (*next == '*') {
      char* star = next;
      while (star != end && (star + 1 == end || star[1] != '/')) {
        star = find(star + 1, '*');
      }
      if (star == end) {
        blank(slash, end);
        return;
      }
      blank(slash, star + 1);
      char* const closing = star + 1;
      const bool reopens = closing + 1 != end && (closing[1] == '/' || closing[1] == '*');
      if (reopens) {
        slash = closing;
      } else {
        *closing = ' ';
        slash = find(closing + 1, '/');
      }
    } else {
      slash = find(next, '/');
    }
  }
}

enum class State { readName, blockOpened, tagValue, blockClosed, commitTag };

bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-';
}

bool isWhiteSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n';
}

/// The state machine over the text of one command file.
class Reading {
 public:
  Reading(InputBlock& root, std::string_view text, bool throwOnError, const std::string& fileName,
          std::string& message)
      : text_(text),
        throwOnError_(throwOnError),
        fileName_(std::make_shared<const std::string>(fileName)),
        message_(&message),
        blocks_{&root} {}

  void run();

 private:
  void step();
  void countByte();
  State readName();
  void openBlock();
  void closeBlock();
  void readValue();
  void finishTag();
  [[nodiscard]] std::string endOfFileFault() const;
  [[nodiscard]] std::string location() const;
  void clearName() {
    name_ = {};
    nameEnded_ = false;
  }

  std::string_view text_;
  bool throwOnError_;
  std::shared_ptr<const std::string> fileName_;
  std::string* message_;
  std::vector<InputBlock*> blocks_;  // the open blocks, the root first
  State state_ = State::readName;
  std::size_t index_ = 0;
  int line_ = 1;
  int column_ = 0;
  std::string_view name_;
  bool nameEnded_ = false;
  int nameLine_ = 1;
  std::size_t valueBegin_ = 0;
  int parentheses_ = 0;
};

std::string Reading::location() const {
  return "near line " + std::to_string(line_) + ", col " + std::to_string(column_);
}

void Reading::countByte() {
  if (text_[index_] == '\n') {
    ++line_;
    column_ = 0;
  } else {
    ++column_;
  }
}

State Reading::readName() {
  const char c = text_[index_];
  if (isNameCharacter(c) && !nameEnded_) {
    name_ =
        name_.empty() ? text_.substr(index_, 1) : std::string_view(name_.data(), name_.size() + 1);
    return State::readName;
  }
  switch (c) {
    case '{':
      if (name_.empty()) {
        throw InputParseError(ParseErrorKind::emptyBlockName,
                              "Found opening brace { with empty block name");
      }
      return State::blockOpened;
    case '=':
      if (name_.empty()) {
        throw InputParseError(ParseErrorKind::emptyTagName,
                              "Found tag definition with empty tag name");
      }
      valueBegin_ = index_ + 1;
      return State::tagValue;
    case '}':
      if (!name_.empty()) {
        throw InputParseError(ParseErrorKind::misplacedBrace,
                              "Found a closing brace '}' after a series of name characters '" +
                                  std::string(name_) + "'");
      }
      return State::blockClosed;
    default:
      break;
  }
  if (isWhiteSpace(c)) {
    nameEnded_ = !name_.empty();
    return State::readName;
  }
  if (nameEnded_) {
    throw InputParseError(ParseErrorKind::whiteSpaceInName,
                          "Found an invalid whitespace character in a name");
  }
  throw InputParseError(
      ParseErrorKind::invalidNameCharacter,
      std::string("Found an invalid character '") + c + "' while expecting a name");
}

void Reading::openBlock() {
  // The byte behind the brace is swallowed, whatever it is.
  blocks_.push_back(&blocks_.back()->getBlock(name_, fileName_, static_cast<unsigned>(line_)));
  clearName();
  state_ = State::readName;
}

void Reading::closeBlock() {
  if (blocks_.size() == 1) {
    throw InputParseError(ParseErrorKind::misplacedBrace, "Closing of the root block found");
  }
  blocks_.pop_back();
  clearName();
  state_ = readName();
  nameLine_ = line_;
}

void Reading::finishTag() {
  const std::string_view value = text_.substr(valueBegin_, index_ - valueBegin_);
  try {
    blocks_.back()->getTag(name_).setRawValue(value);
  } catch (const InputParseError& error) {
    if (!throwOnError_ || error.code != static_cast<unsigned>(ParseErrorKind::tagValue)) {
      throw;
    }
    *message_ += "Tag value error " + location() + ": " + error.message + "\n";
  }
  clearName();
  parentheses_ = 0;
  state_ = State::readName;
  countByte();
}

void Reading::readValue() {
  // Only these characters mean anything in a value. A search of the library calls a function for
  // each character, which shows in long lists.
  std::size_t next = index_;
  while (next < text_.size() && text_[next] != '\n' && text_[next] != '(' && text_[next] != ')') {
    ++next;
  }
  column_ += static_cast<int>(next - index_);
  index_ = next;
  if (index_ == text_.size()) {
    return;
  }
  const char c = text_[index_];
  if (c == '\n' && parentheses_ == 0) {
    finishTag();
    return;
  }
  countByte();
  if (c == '(') {
    ++parentheses_;
  } else if (c == ')') {
    if (parentheses_ == 0) {
      throw InputParseError(ParseErrorKind::tagValue,
                            "Found closing brace in tag value but there was no opening brace");
    }
    --parentheses_;
  }
}

void Reading::step() {
  switch (state_) {
    case State::readName:
      countByte();
      state_ = readName();
      nameLine_ = line_;
      break;
    case State::blockOpened:
      countByte();
      openBlock();
      break;
    case State::tagValue:
      readValue();
      break;
    case State::blockClosed:
      countByte();
      closeBlock();
      break;
    case State::commitTag:
      ASSERT(false, "The parser made a boo boo");
  }
}

std::string Reading::endOfFileFault() const {
  const bool isInvalid =
      state_ != State::readName && !(state_ == State::blockClosed && blocks_.size() == 2);
  if (!isInvalid) {
    return name_.empty() ? "" : "There are some trailing characters at the end of the file! Fix it";
  }
  std::string text =
      "End of file reached in an invalid state, which means that your input file is invalid. ";
  if (!name_.empty() && (state_ == State::tagValue || state_ == State::blockOpened)) {
    text += state_ == State::tagValue ? "The problem occurred while parsing tag '"
                                      : "The problem occured while parsing block '";
    text += std::string(name_) + "'";
    text += fileName_->empty() ? "" : " in file '" + *fileName_ + "'";
    text += " which started on line " + std::to_string(nameLine_) + ". ";
  }
  return text +
         "Usually, this happens if some lists or blocks miss their closing brace '}' or ')'.";
}

void Reading::run() {
  try {
    for (index_ = 0; index_ < text_.size(); ++index_) {
      step();
    }
  } catch (InputParseError& error) {
    if (throwOnError_) {
      error.line = line_;
      throw;
    }
    getLogger().log(level::error, "Parse error " + location() + ": " + error.message + ".");
    return;
  }
  std::string fault = endOfFileFault();
  if (!fault.empty()) {
    if (throwOnError_) {
      throw InputParseError(ParseErrorKind::endOfFile, std::move(fault));
    }
    getLogger().log(level::error, fault);
  }
}

const std::string& textOf(const std::string& message) {
  return message;
}

const std::string& textOf(const Message& message) {
  return message.text;
}

/// What the report says of one block; empty when there is nothing to say.
std::string blockReport(InputBlock& block) {
  std::string header = "Block " + std::string(block.getName());
  if (!block.getFileName().empty()) {
    header +=
        " (on line " + std::to_string(block.getLine()) + " in file '" + block.getFileName() + "')";
  }
  header += ":";
  std::string body;
  const auto append = [&body, &header](std::string_view kind, const auto& messages,
                                       const std::string& tag) {
    body += kind;
    body += messages.size() == 1 ? " in " : "s in ";
    body += tag + header;
    for (const auto& message : messages) {
      body += "\n* ";
      body += textOf(message);
    }
  };
  const auto appendTag = [&](std::string_view kind, const auto& messages, const InputTag& tag) {
    body += body.empty() ? "" : "\n";
    append(kind, messages, std::string(tag.getName()) + " from ");
  };
  if (!block.getErrors().empty()) {
    append("Block-Error", block.getErrors(), "");
  }
  for (std::size_t i = 0; i < block.getNumTags(); ++i) {
    InputTag& tag = block.getTag(i);
    if (!tag.validate()) {
      appendTag("Tag-Error", tag.getErrors(), tag);
    }
  }
  // The missing line feed in front and the blank in the second word are known to users' scripts.
  if (!block.getWarnings().empty()) {
    append("Block-Warning", block.getWarnings(), "");
  }
  for (std::size_t i = 0; i < block.getNumTags(); ++i) {
    const InputTag& tag = block.getTag(i);
    if (!tag.getWarnings().empty()) {
      appendTag("Tag-Warning ", tag.getWarnings(), tag);
    }
  }
  return body;
}

std::string counted(std::size_t number, const std::string& noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

}  // namespace

bool isWritableName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), isNameCharacter);
}

void InputParser::parse(std::istream& in, bool throwOnError, const std::string& fileName) {
  message_.clear();
  const auto reportUnreadable = [&fileName] {
    getLogger().log(level::error, fileName.empty()
                                      ? std::string("InputParser: reading from input failed")
                                      : "InputParser: reading from file '" + fileName + "' failed");
  };
  if (!in) {
    reportUnreadable();
    return;
  }
  std::string message;
  {
    std::vector<char> text = readText(in);
    if (in.bad()) {
      reportUnreadable();
      return;
    }
    blankComments(text);
    Reading(*root_, std::string_view(text.data(), text.size()), throwOnError, fileName, message)
        .run();
  }
  if (!throwOnError) {
    try {
      root_->populate();
    } catch (const InputParseError& error) {
      ASSERT(false,
             "Parse error when populating with default values (which means, this is an internal "
             "error): "
                 << error.message << ".");
    }
  }
  message_ = message;
}

bool InputParser::validateSummary(std::ostream& out) {
  const unsigned errors = root_->validate();
  const std::size_t warnings = root_->getNumWarnings();
  if (errors == 0 && warnings == 0) {
    out << "Input file has been successfully parsed and passed preliminary validation";
    return true;
  }
  out << "Input file has " << counted(warnings, "warning") << " and " << counted(errors, "error");
  std::vector<InputBlock*> blocks{root_};
  while (!blocks.empty()) {
    InputBlock& block = *blocks.back();
    blocks.pop_back();
    if (block.validate() == 0 && block.getNumWarnings() == 0) {
      continue;
    }
    const std::string report = blockReport(block);
    for (std::size_t i = 0; i < block.getNumBlocks(); ++i) {
      blocks.push_back(&block.getBlock(i));
    }
    if (!report.empty()) {
      getLogger().log(level::warning, report);
    }
  }
  return errors == 0;
}

}  // namespace KESTparse
