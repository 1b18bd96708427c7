/// \file
/// The language server: the open files, and what it answers about them.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "language-server/Completion.h"
#include "language-server/Dispatcher.h"
#include "language-server/Session.h"
#include "language-server/Snapshot.h"

namespace kcf::server {

/// Runs a task some time, behind those that were given before.
using Post = std::function<void(std::function<void()> task)>;

/// Takes the messages of one client. What follows a key stroke it answers at once; what needs the
/// whole file, or other files, it leaves to `queries`, and what is wrong with a file to `checks`.
/// These may be threads of their own, which end before the server does. All functions are called by
/// one thread.
class Server {
 public:
  using Clock = std::chrono::steady_clock;

  Server(Send send, Post queries, Post checks);

  void take(std::string_view message) { dispatcher_.take(message); }
  [[nodiscard]] bool isOver() const { return dispatcher_.isOver(); }
  [[nodiscard]] bool wasShutDown() const { return dispatcher_.wasShutDown(); }
  /// When `onTime` is to be called; nothing when there is nothing to wait for.
  [[nodiscard]] std::optional<Clock::time_point> nextDue() const;
  /// Begins the checks that were put off until `now`.
  void onTime(Clock::time_point now);
  /// Ends what runs, since nobody waits for it.
  void cancelAll();

 private:
  /// A version of a file that was looked at, and how far it is still the text.
  struct Version {
    std::shared_ptr<Snapshot> file = {};
    std::size_t unchanged = 0;
    bool isCurrent = false;
  };

  struct OpenFile {
    explicit OpenFile(std::string content) : text(std::move(content)) {}

    Text text;
    std::string directory = {};
    std::optional<std::int64_t> version = {};
    std::shared_ptr<FileMemory> memory = std::make_shared<FileMemory>();
    Version last = {};  ///< the newest
    Version read = {};  ///< the newest that was read
    std::optional<Clock::time_point> checkDue = {};
    std::shared_ptr<Snapshot> checked = {};  ///< whose check may be cancelled
  };

  /// What the user sets in the client.
  struct Settings {
    bool readsFiles = true;
    bool showsHints = true;
    std::string directory = {};
    std::chrono::milliseconds checkDelay{150};
  };

  /// What answers a request about a file, given its parameters.
  using Query = std::function<json(Snapshot& file, const json& params)>;

  void registerLife();
  void registerFiles();
  void registerQueries();
  void onQuery(const std::string& method, Query query);
  void ask(const Query& query, const json& params, const std::shared_ptr<Call>& call);

  json initialize(const json& params);
  [[nodiscard]] json capabilities() const;
  void readClient(const json& client);
  void configure(const json& settings);
  void askConfiguration();
  void askWatching();

  void open(const json& params);
  void change(const json& params);
  void close(const json& params);
  void setFile(const std::string& uri, OpenFile& file, std::string content);
  void apply(OpenFile& file, const json& change);
  OpenFile& fileOf(const json& params);
  [[nodiscard]] std::string directoryOf(const std::string& uri) const;

  std::shared_ptr<Snapshot> snapshotOf(const std::string& uri, OpenFile& file);
  void promote(OpenFile& file);
  void release(std::shared_ptr<Snapshot> file) const;
  void check(const std::string& uri, OpenFile& file, bool mayBeCancelled);
  void checkAll();
  /// Has a file checked; of a large one, the client is told that it takes a while.
  void post(const std::shared_ptr<Snapshot>& file);

  Typing typingAt(const json& params, bool atEndOfWord);
  void completeAt(const json& params, const std::shared_ptr<Call>& call);
  void hoverAt(const json& params, const std::shared_ptr<Call>& call);
  void findSymbols(const json& params, const std::shared_ptr<Call>& call);

  Dispatcher dispatcher_;
  Post queries_;
  Post checks_;
  Session session_;
  Settings settings_;
  std::vector<std::string> folders_;
  std::map<std::string, std::unique_ptr<OpenFile>> files_;
  std::uint64_t lastToken_ = 0;
};

}  // namespace kcf::server
