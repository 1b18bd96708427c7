#include "language-server/Snapshot.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <utility>

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"

namespace kcf::server {

using KESTparse::NodeId;
using KESTparse::NodeKind;
using KESTparse::noNode;

namespace {

constexpr std::string_view fileScheme = "file://";
constexpr int hexadecimal = 16;

bool isPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("/-_.~").find(c) != std::string_view::npos;
}

}  // namespace

std::string pathOfUri(const std::string& uri) {
  if (!uri.starts_with(fileScheme)) {
    return {};
  }
  const std::size_t slash = uri.find('/', fileScheme.size());
  std::string path;
  for (std::size_t at = slash; at < uri.size(); ++at) {
    constexpr std::size_t digits = 2;
    unsigned value = 0;
    const char* const begin = uri.data() + at + 1;
    const bool isCoded =
        uri[at] == '%' && at + digits < uri.size() &&
        std::from_chars(begin, begin + digits, value, hexadecimal).ptr == begin + digits;
    path += isCoded ? static_cast<char>(value) : uri[at];
    at += isCoded ? digits : 0;
  }
  return path;
}

std::string uriOfPath(const std::string& path) {
  std::string uri(fileScheme);
  for (const char c : path) {
    uri += isPlain(c) ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
  }
  return uri;
}

json jsonOf(Position at) {
  return {{"line", at.line}, {"character", at.character}};
}

Position positionOf(const json& at) {
  return {at.at("line").get<std::size_t>(), at.at("character").get<std::size_t>()};
}

Snapshot::Snapshot(const Session& session, Origin origin, std::string content, Lines lines)
    : session_(&session),
      origin_(std::move(origin)),
      size_(content.size()),
      content_(std::move(content)),
      lines_(std::move(lines)) {}

const KESTparse::SyntaxTree& Snapshot::tree() {
  std::call_once(once_, [this] {
    tree_ = KESTparse::Document::readTree(std::move(content_), session_->schema);
    isRead_ = true;
  });
  return *tree_;
}

KESTparse::DocumentOptions Snapshot::options() const {
  KnownFiles known = origin_.memory->known(origin_.directory);
  return {.directory = origin_.directory,
          .readsFiles = origin_.readsFiles,
          .readFiles = std::move(known.read),
          .stop = {},
          .checkedFiles = std::move(known.checked)};
}

const std::vector<KESTparse::Diagnostic>& Snapshot::check() {
  tree();
  const std::lock_guard lock(checking_);
  if (stop_.stop_requested()) {
    throw KESTparse::Cancelled();
  }
  if (!found_) {
    const FileMemory::Time begin = FileMemory::Time::clock::now();
    KESTparse::DocumentOptions options = this->options();
    options.stop = stop_.get_token();
    KESTparse::Document document(tree_, session_->schema, std::move(options));
    const auto learn = [&] {
      origin_.memory->learn(origin_.directory,
                            {document.values().readFiles, document.checkedFiles()}, begin);
    };
    try {
      found_ = document.check();
    } catch (const KESTparse::Cancelled&) {
      learn();
      throw;
    }
    learn();
  }
  return *found_;
}

KESTparse::Place Snapshot::placeOf(NodeId node) {
  const KESTparse::SyntaxTree& text = tree();
  std::vector<NodeId> open;
  NodeId at = text[node].kind == NodeKind::block ? node : text[node].parent;
  for (; at != noNode; at = text[at].parent) {
    open.push_back(at);
  }
  KESTparse::Place place{&session_->schema, "/"};
  for (; !open.empty() && place.block != nullptr; open.pop_back()) {
    const int position = place.block->getLogicalBlockPosition(nameOf(open.back()));
    if (position < 0) {
      return {nullptr, {}};
    }
    place.block = &place.block->getLogicalBlock(static_cast<std::size_t>(position));
    place.path = KESTparse::pathOf(place.path, *place.block);
  }
  return place;
}

const KESTparse::InputTag* Snapshot::prototypeOf(NodeId node) {
  if (tree()[node].kind != NodeKind::tag) {
    return nullptr;
  }
  const KESTparse::InputBlock* const block = placeOf(node).block;
  const int position = block == nullptr ? -1 : block->getLogicalTagPosition(nameOf(node));
  return position < 0 ? nullptr : &block->getLogicalTag(static_cast<std::size_t>(position));
}

const NameIndex& Snapshot::names() {
  std::call_once(namesOnce_, [this] {
    names_ = std::make_unique<NameIndex>(tree(), session_->schema, session_->namings);
    hasNames_ = true;
  });
  return *names_;
}

NodeId Snapshot::nodeAround(std::size_t offset) {
  const NodeId node = tree().nodeAt(offset);
  const NodeId before = offset == 0 ? noNode : tree().nodeAt(offset - 1);
  return node == noNode || tree()[before].parent == node ? before : node;
}

std::string Snapshot::fileOf(NodeId node) {
  const KESTparse::InputTag* const tag = prototypeOf(node);
  const std::string value(tag == nullptr ? std::string_view() : valueOf(node));
  if (value.empty() || !isFileTag(*tag)) {
    return {};
  }
  return (std::filesystem::path(origin_.directory) / value).lexically_normal().string();
}

std::string_view Snapshot::nameOf(NodeId node) {
  return tree()[node].name().in(tree().text());
}

std::string_view Snapshot::valueOf(NodeId node) {
  return tree().valueOf(tree()[node]).in(tree().text());
}

std::size_t Snapshot::offsetOf(const json& position) {
  return lines_.offsetAt(tree().text(), server::positionOf(position), session_->encoding);
}

json Snapshot::positionOf(std::size_t offset) {
  return jsonOf(lines_.positionAt(tree().text(), offset, session_->encoding));
}

json Snapshot::rangeOf(KESTparse::Span at) {
  return {{"start", positionOf(at.begin)}, {"end", positionOf(at.end)}};
}

KESTparse::Span Snapshot::spanOf(const json& range) {
  const std::size_t begin = offsetOf(range.at("start"));
  return {begin, std::max(begin, offsetOf(range.at("end")))};
}

json Snapshot::editsOf(const std::vector<KESTparse::Edit>& edits) {
  json result = json::array();
  for (const KESTparse::Edit& edit : edits) {
    result.push_back({{"range", rangeOf(edit.at)}, {"newText", edit.text}});
  }
  return result;
}

json Snapshot::locationOf(KESTparse::Span at) {
  return {{"uri", origin_.uri}, {"range", rangeOf(at)}};
}

}  // namespace kcf::server
