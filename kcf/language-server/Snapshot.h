/// \file
/// A command file as it was at one moment.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "KESTparse/document/Document.h"
#include "KESTparse/vocabulary/Places.h"
#include "language-server/FileMemory.h"
#include "language-server/NameIndex.h"
#include "language-server/Session.h"
#include "language-server/Text.h"

namespace kcf::server {

using nlohmann::json;

/// The path that a `file:` URI names; empty for any other.
std::string pathOfUri(const std::string& uri);
std::string uriOfPath(const std::string& path);

json jsonOf(Position at);
Position positionOf(const json& at);

/// A version of a command file. It is read when it is first asked for something, and may be asked
/// from any thread.
class Snapshot {
 public:
  struct Origin {
    std::string uri;
    std::optional<std::int64_t> version = {};
    std::string directory = {};  ///< that names of files count from
    bool readsFiles = true;
    std::shared_ptr<FileMemory> memory = std::make_shared<FileMemory>();
  };

  Snapshot(const Session& session, Origin origin, std::string content, Lines lines);

  [[nodiscard]] const Origin& origin() const { return origin_; }
  [[nodiscard]] const Session& session() const { return *session_; }
  /// How its text, or one made of it, is checked: what is known of its files is not read again.
  [[nodiscard]] KESTparse::DocumentOptions options() const;
  [[nodiscard]] std::size_t size() const { return size_; }

  const KESTparse::SyntaxTree& tree();
  /// Whether `tree` answers at once.
  [[nodiscard]] bool isRead() const { return isRead_; }
  /// What is wrong. Throws `KESTparse::Cancelled` behind `cancel`.
  const std::vector<KESTparse::Diagnostic>& check();
  void cancel() { stop_.request_stop(); }

  /// The names; found when they are first asked for.
  const NameIndex& names();
  [[nodiscard]] bool hasNames() const { return hasNames_; }

  /// The place in the schema of a block, or of the block that holds any other node; its block is
  /// null where the schema knows none.
  KESTparse::Place placeOf(KESTparse::NodeId node);
  /// The prototype of a tag; null for what is none.
  const KESTparse::InputTag* prototypeOf(KESTparse::NodeId node);
  /// Where the file that a tag names is opened; empty for what is no tag of a file.
  std::string fileOf(KESTparse::NodeId node);
  /// The name of a node as it stands in the text.
  std::string_view nameOf(KESTparse::NodeId node);
  /// The tag or the block around the byte at `offset`, or right in front of it.
  KESTparse::NodeId nodeAround(std::size_t offset);
  /// The value of a tag without comments and white space at its ends.
  std::string_view valueOf(KESTparse::NodeId node);

  std::size_t offsetOf(const json& position);
  json positionOf(std::size_t offset);
  json rangeOf(KESTparse::Span at);
  KESTparse::Span spanOf(const json& range);
  /// Edits of this text, as the client takes them.
  json editsOf(const std::vector<KESTparse::Edit>& edits);
  json locationOf(KESTparse::Span at);

 private:
  const Session* session_;
  Origin origin_;
  std::size_t size_;
  std::string content_;  // until it is read
  Lines lines_;
  std::stop_source stop_;
  std::once_flag once_;
  std::atomic<bool> isRead_ = false;
  std::shared_ptr<const KESTparse::SyntaxTree> tree_;
  std::mutex checking_;
  std::optional<std::vector<KESTparse::Diagnostic>> found_;
  std::once_flag namesOnce_;
  std::atomic<bool> hasNames_ = false;
  std::unique_ptr<NameIndex> names_;
};

}  // namespace kcf::server
