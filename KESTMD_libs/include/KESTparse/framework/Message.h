/// \file
/// What rules say, and what it is about.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KESTparse {

class InputBlock;

enum class Severity : std::uint8_t { error, warning };

/// What a message is about: a tag of a block, an item of its list, a block as a whole, or a place
/// in a file that a tag of the block names.
struct Subject {
  const InputBlock* block;       ///< the block that holds the tag
  std::string_view member = {};  ///< the member bound to the tag; empty for the block as a whole
  std::uint32_t item = 0;        ///< of a list, counted from 1; 0 for the whole value
  std::string file = {};         ///< path of a file that was read; empty for the command file
  std::uint32_t line = 0;        ///< in that file, counted from 1
  std::uint32_t column = 0;      ///< in that file, in bytes, counted from 1
};

/// What hosts other than the converter show of a rule.
struct MessageDetails {
  std::string_view rule;          ///< name of the rule within its block class, such as "no-slope"
  std::string sentence;           ///< what is wrong, for who has never seen the program
  std::string help;               ///< how to mend it
  std::vector<Subject> subjects;  ///< what is wrong first, what it is held against behind it
};

/// An error or a warning of a block.
struct Message {
  std::string text;                         ///< as the report shows it
  std::unique_ptr<MessageDetails> details;  ///< only where `GlobalValues::explainsMessages` is on
};

}  // namespace KESTparse
