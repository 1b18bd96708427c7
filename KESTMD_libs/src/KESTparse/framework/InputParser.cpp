#include "KESTparse/framework/InputParser.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string_view>
#include <vector>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/Scanner.h"

namespace KESTparse {
namespace {

/// How many bytes `in` holds from here on; 0 when that cannot be told, as of a pipe.
std::size_t remainingSize(std::istream& in) {
  const auto here = in.tellg();
  const auto end = in.seekg(0, std::ios::end).tellg();
  in.clear();
  in.seekg(here);
  in.clear();
  return end > here ? static_cast<std::size_t>(end - here) : 0;
}

/// Reads all of `in`.
std::vector<char> readText(std::istream& in) {
  std::vector<char> text(200000);
  std::size_t size = 0;
  while (in.read(text.data() + size, static_cast<std::streamsize>(text.size() - size))) {
    size = text.size();
    // One byte more than expected shows the end of the file without another step.
    text.resize(size + std::max(size / 2, remainingSize(in) + 1));
  }
  text.resize(size + static_cast<std::size_t>(in.gcount()));
  return text;
}

/// How much is read before its memory is given back [bytes].
constexpr std::size_t giveBackStep = std::size_t{1} << 20;

/// Gives the pages that lie wholly between `begin` and `end` back to the system. What stood there
/// is lost, but for the system that has no such call.
void giveBack(char* begin, const char* end) {
  const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t before = reinterpret_cast<std::uintptr_t>(begin) % pageSize;
  char* const first = before == 0 ? begin : begin + (pageSize - before);
  if (first < end) {
    const auto size = static_cast<std::size_t>(end - first);
    ::madvise(first, size - size % pageSize, MADV_DONTNEED);
  }
}

/// Builds the tree of one command file. The first fault is thrown, unless values are only
/// collected.
class Reading {
 public:
  static constexpr bool goesOn = false;

  /// `text` is lost behind the reading.
  Reading(InputBlock& root, std::vector<char>& text, bool throwOnError, const std::string& fileName,
          std::string& message)
      : memory_(text.data()),
        text_(text.data(), text.size()),
        throwOnError_(throwOnError),
        fileName_(std::make_shared<const std::string>(fileName)),
        message_(&message),
        blocks_{&root},
        nextFeed_(text_.find('\n')) {}

  /// Reads it all. Faults go to the host, or are thrown, as the caller of `parse` wants it.
  void run();

  // The events of the scanner.
  void open(Span name, std::size_t brace);
  void close(std::size_t brace);
  void tag(Span name, std::size_t equals, Span value);
  bool fault(const SyntaxFault& fault);
  void end(const Ending& ending);

 private:
  /// The line of the byte at `at`, counted from 1, where a line feed begins the next line. Places
  /// must be asked for in their order.
  unsigned lineOf(std::size_t at);
  [[nodiscard]] std::string location();
  /// Gives back what stands in front of the current line, since the tree takes its place.
  void giveBackLines();

  char* memory_;
  std::string_view text_;
  bool throwOnError_;
  std::shared_ptr<const std::string> fileName_;
  std::string* message_;
  std::vector<InputBlock*> blocks_;  // the open blocks, the root first
  std::size_t at_ = 0;               // where reading stands
  std::size_t nextFeed_;             // the first line feed that is not counted
  std::size_t givenBack_ = 0;        // the bytes that are read and gone
  unsigned line_ = 1;
  std::string endFault_;
};

unsigned Reading::lineOf(std::size_t at) {
  for (; nextFeed_ <= at; nextFeed_ = text_.find('\n', nextFeed_ + 1)) {
    ++line_;
  }
  return line_;
}

std::string Reading::location() {
  const std::size_t feed = text_.rfind('\n', at_);
  const std::size_t column = feed == std::string_view::npos ? at_ + 1 : at_ - feed;
  return "near line " + std::to_string(lineOf(at_)) + ", col " + std::to_string(column);
}

void Reading::giveBackLines() {
  const std::size_t feed = text_.rfind('\n', at_);
  if (feed != std::string_view::npos && feed > givenBack_) {
    lineOf(feed);
    giveBack(memory_ + givenBack_, memory_ + feed);
    givenBack_ = feed;
  }
}

void Reading::open(Span name, std::size_t brace) {
  // The byte behind a brace belongs to it, whatever it is.
  at_ = brace + 1;
  if (at_ < text_.size()) {
    blocks_.push_back(&blocks_.back()->getBlock(name.in(text_), fileName_, lineOf(at_)));
  }
}

void Reading::close(std::size_t brace) {
  at_ = brace + 1;
  if (at_ == text_.size()) {
    return;
  }
  if (blocks_.size() == 1) {
    throw InputParseError(ParseErrorKind::misplacedBrace, "Closing of the root block found");
  }
  blocks_.pop_back();
}

void Reading::tag(Span name, std::size_t /*equals*/, Span value) {
  at_ = value.end - 1;
  try {
    blocks_.back()->getTag(name.in(text_)).setRawValue(value.in(text_));
  } catch (const InputParseError& error) {
    if (!throwOnError_ || error.code != static_cast<unsigned>(ParseErrorKind::tagValue)) {
      throw;
    }
    *message_ += "Tag value error " + location() + ": " + error.message + "\n";
  }
  if (at_ > givenBack_ + giveBackStep) {
    giveBackLines();
  }
}

bool Reading::fault(const SyntaxFault& fault) {
  at_ = fault.at;
  switch (fault.kind) {
    case ParseErrorKind::emptyBlockName:
      throw InputParseError(fault.kind, "Found opening brace { with empty block name");
    case ParseErrorKind::emptyTagName:
      throw InputParseError(fault.kind, "Found tag definition with empty tag name");
    case ParseErrorKind::misplacedBrace:
      throw InputParseError(fault.kind,
                            "Found a closing brace '}' after a series of name characters '" +
                                std::string(fault.name.in(text_)) + "'");
    case ParseErrorKind::whiteSpaceInName:
      throw InputParseError(fault.kind, "Found an invalid whitespace character in a name");
    case ParseErrorKind::tagValue:
      throw InputParseError(fault.kind,
                            "Found closing brace in tag value but there was no opening brace");
    default:
      throw InputParseError(fault.kind, std::string("Found an invalid character '") +
                                            text_[fault.at] + "' while expecting a name");
  }
}

void Reading::end(const Ending& ending) {
  using Behind = Ending::Behind;
  const bool isInvalid = ending.behind != Behind::name &&
                         !(ending.behind == Behind::closingBrace && blocks_.size() == 2);
  if (!isInvalid) {
    endFault_ = ending.name.empty()
                    ? ""
                    : "There are some trailing characters at the end of the file! Fix it";
    return;
  }
  endFault_ =
      "End of file reached in an invalid state, which means that your input file is invalid. ";
  if (ending.behind != Behind::closingBrace) {
    endFault_ += ending.behind == Behind::equals ? "The problem occurred while parsing tag '"
                                                 : "The problem occured while parsing block '";
    endFault_ += std::string(ending.name.in(text_)) + "'";
    endFault_ += fileName_->empty() ? "" : " in file '" + *fileName_ + "'";
    endFault_ += " which started on line " + std::to_string(lineOf(ending.at)) + ". ";
  }
  endFault_ += "Usually, this happens if some lists or blocks miss their closing brace '}' or ')'.";
}

void Reading::run() {
  try {
    Scanner(text_, *this).run();
  } catch (InputParseError& error) {
    if (throwOnError_) {
      error.line = static_cast<int>(lineOf(at_));
      throw;
    }
    console().endWithError("Parse error " + location() + ": " + error.message + ".");
  }
  if (endFault_.empty()) {
    return;
  }
  if (throwOnError_) {
    throw InputParseError(ParseErrorKind::endOfFile, std::move(endFault_));
  }
  console().endWithError(endFault_);
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
  for (InputTag& tag : block.tags()) {
    if (!tag.validate()) {
      appendTag("Tag-Error", tag.getErrors(), tag);
    }
  }
  // The missing line feed in front and the blank in the second word are known to users' scripts.
  if (!block.getWarnings().empty()) {
    append("Block-Warning", block.getWarnings(), "");
  }
  for (const InputTag& tag : block.tags()) {
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

void InputParser::parse(std::istream& in, bool throwOnError, const std::string& fileName) {
  message_.clear();
  const auto reportUnreadable = [&fileName] {
    console().endWithError(fileName.empty()
                               ? std::string("InputParser: reading from input failed")
                               : "InputParser: reading from file '" + fileName + "' failed");
  };
  if (!in) {
    reportUnreadable();
  }
  std::string message;
  {
    std::vector<char> text = readText(in);
    if (in.bad()) {
      reportUnreadable();
    }
    blankComments(text);
    Reading(*root_, text, throwOnError, fileName, message).run();
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
    for (InputBlock& child : block.blocks()) {
      blocks.push_back(&child);
    }
    if (!report.empty()) {
      console().show(level::warning, report);
    }
  }
  return errors == 0;
}

}  // namespace KESTparse
