/// \file
/// What is wrong in the files that a command file names.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/framework/Scanner.h"

namespace KESTparse {

/// A fault in a text, with other places of the text that matter.
struct FileFault {
  struct Other {
    Span at;
    std::string message;
  };

  std::string_view code;
  Span at;
  std::string message;
  std::string help;
  std::vector<Other> related = {};
};

/// A place in a file as people count it: from 1, columns in code points, the end excluded.
struct FilePlace {
  std::uint32_t line = 1;
  std::uint32_t column = 1;
  std::uint32_t endColumn = 2;
};

/// The same without the text, by which it can be kept.
struct PlacedFault {
  struct Other {
    FilePlace at;
    std::string message;
  };

  std::string_view code;
  FilePlace at;
  std::string message;
  std::string help;
  std::vector<Other> related = {};
};

/// Takes up the faults of a text. Of a kind that is there thousands of times the first ones are
/// kept, and the number of the others is told.
class FaultList {
 public:
  /// Whether one more fault of that kind is wanted; counts it in any case.
  bool wants(std::string_view code);
  /// Adds a fault that is wanted.
  void add(FileFault fault) { faults_.push_back(std::move(fault)); }
  [[nodiscard]] bool empty() const { return faults_.empty(); }
  /// Whether a fault of that kind was counted.
  [[nodiscard]] bool has(std::string_view code) const { return counts_.contains(code); }

  /// The faults in the order of `text`, in a time linear in its size.
  [[nodiscard]] std::vector<PlacedFault> placed(std::string_view text);

 private:
  std::map<std::string_view, std::size_t> counts_;
  std::vector<FileFault> faults_;
};

/// The word with that number in the line that begins at `lineBegin`, counted from 0; the whole line
/// when it has fewer.
Span wordAt(std::string_view text, std::size_t lineBegin, std::size_t number);

/// The line that begins at `lineBegin`, without its end.
Span lineAt(std::string_view text, std::size_t lineBegin);

/// Finds what keeps programs from reading a text: an encoding or line ends that they do not know.
/// \return false when nothing else is to be looked for, since no program reads it.
bool findForeignText(std::string_view text, FaultList& faults);

}  // namespace KESTparse
