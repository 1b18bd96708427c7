#include "DocumentWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <nlohmann/json.hpp>
#include <ostream>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagEnum.h"
#include "KESTparse/framework/InputTagList.h"
#include "KESTparse/framework/InputTagNumber.h"
#include "KESTparse/framework/InputTagString.h"
#include "KESTparse/framework/InputTagVisitor.h"

namespace KESTparse {
namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 16;
constexpr std::size_t indentStep = 2;
/// Longer than any number.
constexpr std::size_t numberSize = 64;
/// The indent of the keys of the domain.
constexpr std::size_t domainIndent = 3 * indentStep;

bool isPlain(char c) {
  return c >= ' ' && c < '\x7f' && c != '"' && c != '\\';
}

bool isAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return (c & '\x80') != 0; });
}

/// Whether all texts that a tag shows are ASCII.
class AsciiCheck : public SelectiveTagVisitor {
 public:
  using SelectiveTagVisitor::visit;
  void visit(const InputTagBoolean& tag) override { look(tag.getRawText()); }
  void visit(const InputTagString& tag) override { look(tag.getRawText()); }
  void visit(const InputTagStringStd& tag) override { look(tag.getRawText()); }
  void visit(const InputTagFile& tag) override { look(tag.getRawText()); }
  void visit(const InputTagSeriesFile& tag) override { look(tag.getRawText()); }
  void visit(const InputTagPosition& tag) override { look(tag.getRawText()); }
  void visit(const InputTagEnumBase& tag) override { look(tag.getRawText()); }
  void visit(const InputTagTaggedList<double>& tag) override { look(tag.getListName()); }
  void visit(const InputTagList<std::string>& tag) override { lookAtAll(tag.getValues()); }
  void visit(const InputTagSpecialOutputValueList& tag) override { lookAtAll(tag.getValues()); }

  [[nodiscard]] bool passed() const { return passed_; }

 private:
  void look(std::string_view text) { passed_ = passed_ && isAscii(text); }
  void lookAtAll(const std::vector<std::string>& texts) {
    std::for_each(texts.begin(), texts.end(), [this](const std::string& text) { look(text); });
  }

  bool passed_ = true;
};

}  // namespace

DocumentBuffer::DocumentBuffer() : buffer_(bufferSize) {}

void DocumentBuffer::put(std::string_view text) {
  if (text.size() > bufferSize) {
    flush();
    if (out_ != nullptr) {
      out_->write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    return;
  }
  std::memcpy(room(text.size()), text.data(), text.size());
  size_ += text.size();
}

void DocumentBuffer::startLine(std::size_t indent) {
  char* const line = room(indent + 1);
  *line = '\n';
  std::memset(line + 1, ' ', indent);
  size_ += indent + 1;
}

void DocumentBuffer::putText(std::string_view text) {
  if (!std::all_of(text.begin(), text.end(), isPlain)) {
    put(nlohmann::json(text).dump());
    return;
  }
  put('"');
  put(text);
  put('"');
}

void DocumentBuffer::putNumber(double number) {
  if (!std::isfinite(number)) {
    put("null");
    return;
  }
  char* const begin = room(numberSize);
  // The library's own digits, which are not always those of other algorithms.
  const char* const end = nlohmann::detail::to_chars(begin, begin + numberSize, number);
  size_ += static_cast<std::size_t>(end - begin);
}

void DocumentBuffer::putNumber(int number) {
  char* const begin = room(numberSize);
  size_ += static_cast<std::size_t>(std::to_chars(begin, begin + numberSize, number).ptr - begin);
}

void DocumentBuffer::flush() {
  if (out_ != nullptr) {
    out_->write(buffer_.data(), static_cast<std::streamsize>(size_));
  }
  size_ = 0;
}

/// The keys of a block's object in their order, worked out once for each master.
struct DocumentWriter::Order {
  struct Place {
    std::string_view name;
    std::string key;                ///< from the line end before it to the blank behind its colon
    bool isRepeatable = false;      ///< whether the key holds an array
    std::uint32_t tagPosition = 0;  ///< of a tag in the schema
    const InputBlock* master = nullptr;  ///< of a sub-block; null for a tag
    std::unique_ptr<Order> below;        ///< of a sub-block
  };

  /// The order of the tags of `master`. Sub-blocks take their places as the tree shows them, since
  /// their tables are not declared before.
  Order(const InputBlock& master, std::size_t indentOfKeys);

  /// The order of the sub-blocks of that master.
  Order& below(const InputBlock& master);

  std::size_t indent;
  std::vector<Place> places;

 private:
  void add(Place place);

  std::vector<std::pair<const InputBlock*, Order*>> known_;
};

DocumentWriter::Order::Order(const InputBlock& master, std::size_t indentOfKeys)
    : indent(indentOfKeys) {
  for (const InputTag& tag : master.logicalTags()) {
    Place place;
    place.name = tag.getName();
    place.isRepeatable = tag.isRepeatable();
    place.tagPosition = tag.getPosition();
    add(std::move(place));
  }
}

DocumentWriter::Order& DocumentWriter::Order::below(const InputBlock& master) {
  for (const auto& [known, order] : known_) {
    if (known == &master) {
      return *order;
    }
  }
  Place place;
  place.name = master.getName();
  place.isRepeatable = master.isRepeatable();
  place.master = &master;
  place.below = std::make_unique<Order>(master, indent + (place.isRepeatable ? 2 : 1) * indentStep);
  known_.emplace_back(&master, place.below.get());
  add(std::move(place));
  return *known_.back().second;
}

void DocumentWriter::Order::add(Place place) {
  place.key = "\n" + std::string(indent, ' ') + nlohmann::json(place.name).dump() + ": ";
  const auto behind = std::find_if(places.begin(), places.end(),
                                   [&](const Place& other) { return other.name > place.name; });
  places.insert(behind, std::move(place));
}

/// One key of an object with its value, or with the array of its values. Nothing is written when
/// there is none.
class DocumentWriter::Entry {
 public:
  /// \param indent that of the key.
  /// \param isFirstKey whether the object has no key yet.
  Entry(DocumentBuffer& out, std::size_t indent, const Order::Place& place, bool& isFirstKey)
      : out_(&out), indent_(indent), place_(&place), isFirstKey_(&isFirstKey) {}

  [[nodiscard]] std::size_t indentOfValues() const {
    return indent_ + (place_->isRepeatable ? indentStep : 0);
  }

  /// In front of each value.
  void beginValue() {
    if (isFirstValue_) {
      out_->put(*isFirstKey_ ? '{' : ',');
      out_->put(place_->key);
    } else {
      out_->put(',');
    }
    if (place_->isRepeatable) {
      if (isFirstValue_) {
        out_->put('[');
      }
      out_->startLine(indentOfValues());
    }
    isFirstValue_ = false;
    *isFirstKey_ = false;
  }

  /// Behind the last value.
  void end() {
    if (place_->isRepeatable && !isFirstValue_) {
      out_->startLine(indent_);
      out_->put(']');
    }
  }

 private:
  DocumentBuffer* out_;
  std::size_t indent_;
  const Order::Place* place_;
  bool* isFirstKey_;
  bool isFirstValue_ = true;
};

/// Writes the value of a tag by its kind. Words stay words: there is no JSON boolean.
class DocumentWriter::Values : public InputTagVisitor {
 public:
  /// \param indent that of the line on which the value begins.
  Values(DocumentBuffer& out, std::size_t indent) : out_(&out), indent_(indent) {}
  using InputTagVisitor::visit;

  void visit(const InputTagNumber<int>& tag) override { out_->putNumber(tag.asInt()); }
  void visit(const InputTagNumber<double>& tag) override { out_->putNumber(tag.asDouble()); }
  void visit(const InputTagSlope& tag) override { out_->putNumber(tag.asDouble() * 1000.0); }
  void visit(const InputTagBoolean& tag) override { out_->putText(tag.getRawText()); }
  void visit(const InputTagString& tag) override { out_->putText(tag.getRawText()); }
  void visit(const InputTagStringStd& tag) override { out_->putText(tag.getRawText()); }
  void visit(const InputTagFile& tag) override { out_->putText(tag.getRawText()); }
  void visit(const InputTagSeriesFile& tag) override { out_->putText(tag.getRawText()); }
  void visit(const InputTagPosition& tag) override { out_->putText(tag.getRawText()); }
  void visit(const InputTagEnumBase& tag) override { out_->putText(tag.getRawText()); }
  void visit(const InputTagList<int>& tag) override { putNumbers(tag.getValues(), indent_); }
  void visit(const InputTagList<double>& tag) override { putNumbers(tag.getValues(), indent_); }
  void visit(const InputTagList<std::string>& tag) override {
    putArray(tag.getValues(), indent_, [this](const std::string& item) { out_->putText(item); });
  }
  void visit(const InputTagSpecialOutputValueList& tag) override {
    putArray(tag.getValues(), indent_, [this](const std::string& item) {
      const OutputItem parts = splitOutputItem(item);
      const std::size_t inner = indent_ + 2 * indentStep;
      out_->put('{');
      out_->startLine(inner);
      out_->put("\"accumulator\": ");
      out_->putText(parts.accumulator.empty() ? "none" : parts.accumulator);
      out_->put(',');
      out_->startLine(inner);
      out_->put("\"value\": ");
      out_->putText(parts.value);
      out_->startLine(inner - indentStep);
      out_->put('}');
    });
  }
  void visit(const InputTagTaggedList<double>& tag) override {
    const std::size_t inner = indent_ + indentStep;
    out_->put('{');
    out_->startLine(inner);
    out_->put("\"list\": ");
    putNumbers(tag.getValues(), inner);
    out_->put(',');
    out_->startLine(inner);
    out_->put("\"tag\": ");
    out_->putText(tag.getListName());
    out_->startLine(indent_);
    out_->put('}');
  }

 private:
  template <class Items, class PutItem>
  void putArray(const Items& items, std::size_t indent, PutItem putItem) {
    out_->put('[');
    bool isFirst = true;
    for (const auto& item : items) {
      if (!isFirst) {
        out_->put(',');
      }
      isFirst = false;
      out_->startLine(indent + indentStep);
      putItem(item);
    }
    if (!isFirst) {
      out_->startLine(indent);
    }
    out_->put(']');
  }

  template <class Number>
  void putNumbers(const std::vector<Number>& numbers, std::size_t indent) {
    putArray(numbers, indent, [this](Number number) { out_->putNumber(number); });
  }

  DocumentBuffer* out_;
  std::size_t indent_;
};

DocumentWriter::DocumentWriter(const InputBlock& root)
    : project_(root.getBlockByPath("PROJECT")), domain_(root.getBlockByPath("DOMAIN")) {
  bool isAsciiOnly = project_ == nullptr || !project_->hasTag("title") ||
                     isAscii(project_->getTag("title", 0).getRawText());
  if (domain_ != nullptr) {
    order_ = std::make_unique<Order>(*domain_->getLogicalMaster(), domainIndent);
    isAsciiOnly = prepare(*domain_, *order_) && isAsciiOnly;
  }
  if (!isAsciiOnly) {
    // Nowhere, to meet a text that is no UTF-8 before something is written.
    writeDocument();
  }
}

DocumentWriter::~DocumentWriter() = default;

/// Makes the orders of all blocks that the tree has. True when all their texts are ASCII.
bool DocumentWriter::prepare(const InputBlock& block, Order& order) {
  AsciiCheck check;
  for (const InputTag& tag : block.tags()) {
    tag.accept(check);
  }
  bool isAsciiOnly = check.passed();
  for (const InputBlock& child : block.blocks()) {
    if (&block != domain_ || child.getName() != "PARALLEL") {
      isAsciiOnly = prepare(child, order.below(*child.getLogicalMaster())) && isAsciiOnly;
    }
  }
  return isAsciiOnly;
}

void DocumentWriter::write(std::ostream& out) {
  out_.setStream(&out);
  writeDocument();
  out_.flush();
}

void DocumentWriter::writeDocument() {
  out_.put("{\n  \"SETUP\": {\n    \"KESTMD\": ");
  if (domain_ == nullptr) {
    out_.put("{}");
  } else {
    writeBlock(*domain_, *order_);
  }
  out_.put(",\n    \"simulation_name\": ");
  const bool hasTitle = project_ != nullptr && project_->hasTag("title");
  out_.putText(hasTitle ? project_->getTag("title", 0).getRawText() : "unnamed_project");
  out_.put("\n  }\n}");
}

void DocumentWriter::writeBlock(const InputBlock& block, const Order& order) {
  bool isEmpty = true;
  for (const Order::Place& place : order.places) {
    Entry entry(out_, order.indent, place, isEmpty);
    if (place.master == nullptr) {
      writeTags(block, place.tagPosition, entry);
    } else {
      for (const InputBlock& child : block.blocks()) {
        if (child.getLogicalMaster() == place.master) {
          entry.beginValue();
          writeBlock(child, *place.below);
        }
      }
    }
    entry.end();
  }
  if (isEmpty) {
    out_.put("{}");
    return;
  }
  out_.startLine(order.indent - indentStep);
  out_.put('}');
}

void DocumentWriter::writeTags(const InputBlock& block, std::uint32_t position, Entry& entry) {
  const InputTag* const first = block.findTag(position);
  if (first == nullptr) {
    return;
  }
  Values values(out_, entry.indentOfValues());
  if (!first->isRepeatable()) {
    entry.beginValue();
    first->accept(values);
    return;
  }
  for (const InputTag& tag : block.tags()) {
    if (tag.getPosition() == position) {
      entry.beginValue();
      tag.accept(values);
    }
  }
}

}  // namespace KESTparse
