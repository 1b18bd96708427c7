/// \file
/// The document of a setup, written straight from its tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KESTparse {

class InputBlock;

/// Takes a document piece by piece, and makes few large writes to a stream of its many small ones.
class DocumentBuffer {
 public:
  DocumentBuffer();

  /// Where the text goes from now on; null for nowhere.
  void setStream(std::ostream* out) { out_ = out; }
  void put(char c) { *room(1) = c, ++size_; }
  void put(std::string_view text);
  /// A line end and that many blanks.
  void startLine(std::size_t indent);
  void putText(std::string_view text);
  void putNumber(double number);
  void putNumber(int number);
  void flush();

 private:
  /// Place for at least that many characters, at most a few thousand.
  char* room(std::size_t length) {
    if (length > buffer_.size() - size_) {
      flush();
    }
    return buffer_.data() + size_;
  }

  std::ostream* out_ = nullptr;
  std::vector<char> buffer_;
  std::size_t size_ = 0;
};

/// Writes, byte for byte, what the library prints of the value that `buildDocument` makes of a
/// tree.
class DocumentWriter {
 public:
  /// For a validated tree, which must outlive the writer. Throws the exception of the library if a
  /// text of the document is no UTF-8; nothing that is written later can fail but the stream.
  explicit DocumentWriter(const InputBlock& root);
  ~DocumentWriter();
  DocumentWriter(const DocumentWriter&) = delete;
  DocumentWriter& operator=(const DocumentWriter&) = delete;

  /// Writes the document, without a line end behind it.
  void write(std::ostream& out);

 private:
  struct Order;
  class Entry;
  class Values;

  bool prepare(const InputBlock& block, Order& order);
  void writeDocument();
  void writeBlock(const InputBlock& block, const Order& order);
  /// Writes the values of the tag at a place of the schema.
  void writeTags(const InputBlock& block, std::uint32_t position, Entry& entry);

  const InputBlock* project_;
  const InputBlock* domain_;
  std::unique_ptr<Order> order_;
  DocumentBuffer out_;
};

}  // namespace KESTparse
