/// \file
/// A command file with all that can be told of it.
#pragma once

#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "KESTparse/base/Console.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/document/Diagnostic.h"
#include "KESTparse/document/SetupFindings.h"

namespace KESTparse {

class InputBlock;
class InputTag;
class KestrixInputRoot;

/// How a command file is looked at.
struct DocumentOptions {
  std::string directory =
      {};                     ///< the folder that names of files count from; empty: the current one
  bool readsFiles = true;     ///< whether the files that it names are opened
  ReadFiles readFiles = {};   ///< what is known of its files: they are not read again
  std::stop_token stop = {};  ///< ends the check, which then throws `Cancelled`
  CheckedFiles checkedFiles = {};  ///< what was found out of its files
};

/// The host wants to know nothing more of a document, which is then of no use.
struct Cancelled {};

/// One command file: its text, the tree of the text, the setup that it means, and what is wrong
/// with it. It never ends the process, and may be used from any thread, by one at a time.
class Document {
 public:
  /// Reads `text` as far as it can be read. `schema` outlives the document and may be shared.
  Document(std::string text, const KestrixInputRoot& schema, DocumentOptions options = {});
  /// The same of a text that was read by `readTree`.
  Document(std::shared_ptr<const SyntaxTree> tree, const KestrixInputRoot& schema,
           DocumentOptions options = {});
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  ~Document();

  /// The tree of a text, with braces that are missing found by the schema, too.
  static std::shared_ptr<const SyntaxTree> readTree(std::string text,
                                                    const KestrixInputRoot& schema);

  /// The path under which a document opens a file that it names, as `CheckedFiles` has it. Names
  /// count from `directory`.
  static std::string pathOf(std::string_view name, const std::string& directory);

  /// All that is wrong, in the order of the text, each thing once. Worked out when first asked for.
  const std::vector<Diagnostic>& check();
  /// What the converter does with the file when it is started in the folder that names count from;
  /// nothing when the files that it names are not opened.
  std::optional<bool> converts();

  [[nodiscard]] const SyntaxTree& syntax() const { return syntax_; }
  /// The lines of the text.
  [[nodiscard]] const LineTable& lines() const { return lines_; }
  /// The setup, as far as it could be read, with the defaults of what was left out.
  [[nodiscard]] const InputBlock& root() const { return *root_; }
  /// What was made of a node; null where it could not be.
  [[nodiscard]] const InputBlock* blockOf(NodeId node) const;
  [[nodiscard]] const InputTag* tagOf(NodeId node) const;
  /// The node that a block or a tag was made of; `noNode` for defaults.
  [[nodiscard]] NodeId nodeOf(const InputBlock& block) const;
  [[nodiscard]] NodeId nodeOf(const InputTag& tag) const;
  /// What was found out of the files that it names, for a further check.
  [[nodiscard]] const CheckedFiles& checkedFiles() const { return options_.checkedFiles; }
  /// The values that hold for the file; make them active to ask the setup for more.
  [[nodiscard]] GlobalValues& values() { return values_; }

 private:
  class Builder;
  class Checker;
  struct ConverterStop;

  void prepare(GlobalValues& values);
  /// Throws when the host has cancelled.
  void goOn() const;
  /// What ends the converter on this text; nothing when it writes a document.
  [[nodiscard]] std::optional<ConverterStop> runConverter();
  [[nodiscard]] NodeId find(const void* made) const;

  DocumentOptions options_;
  const KestrixInputRoot* schema_;
  QuietConsole console_;
  GlobalValues values_;
  std::shared_ptr<const SyntaxTree> tree_;
  const SyntaxTree& syntax_;
  LineTable lines_;
  std::unique_ptr<InputBlock> root_;
  std::vector<const void*> made_;       // for each node the block or the tag
  mutable std::vector<NodeId> places_;  // of what was made, by its hash; made when first asked for
  std::unique_ptr<Builder> builder_;
  std::vector<Diagnostic> diagnostics_;
  bool isChecked_ = false;
  std::optional<bool> converts_;
};

}  // namespace KESTparse
