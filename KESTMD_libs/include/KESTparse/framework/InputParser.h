/// \file
/// The reader of command files.
#pragma once

#include <iosfwd>
#include <string>

namespace KESTparse {

class InputBlock;

/// Turns the text of one command file into the actual tree below the root, and reports what the
/// validation of that tree finds.
class InputParser {
 public:
  /// `root` outlives the parser.
  explicit InputParser(InputBlock& root) : root_(&root) {}

  /// Reads a command file and adds what it leaves out. The first error goes to the host, where it
  /// ends. With `throwOnError` the first error is thrown as an `InputParseError`
  /// instead, refused values are only collected in the message, and nothing is added.
  /// \param fileName shown in messages and kept by the blocks; may be empty.
  void parse(std::istream& in, bool throwOnError, const std::string& fileName);

  /// Validates the tree and writes its summary to `out`; the reports of the blocks go to the log.
  /// Returns whether there are no errors.
  bool validateSummary(std::ostream& out);

  /// The refused values of the last parse with `throwOnError`, one a line.
  [[nodiscard]] const std::string& getMessage() const { return message_; }

 private:
  InputBlock* root_;
  std::string message_;
};

}  // namespace KESTparse
