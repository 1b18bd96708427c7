#include "language-server/LanguageServer.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <functional>
#include <iostream>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "language-server/Framing.h"
#include "language-server/Server.h"

namespace kcf {
namespace {

using server::Server;

/// Items that one thread hands to another.
template <class Item>
class Queue {
 public:
  /// Waits while there are too many.
  void push(Item item) {
    constexpr std::size_t most = 10000;
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return items_.size() < most; });
    items_.push_back(std::move(item));
    changed_.notify_all();
  }

  /// Waits for an item, at most until `due`.
  std::optional<Item> pop(std::optional<Server::Clock::time_point> due = {}) {
    std::unique_lock lock(mutex_);
    const auto hasItem = [this] { return !items_.empty(); };
    if (due) {
      changed_.wait_until(lock, *due, hasItem);
    } else {
      changed_.wait(lock, hasItem);
    }
    if (items_.empty()) {
      return std::nullopt;
    }
    Item item = std::move(items_.front());
    items_.pop_front();
    changed_.notify_all();
    return item;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Item> items_;
};

/// A thread that runs tasks one after the other, and those that are left when it is destroyed.
class Worker {
 public:
  Worker() : thread_([this] { run(); }) {}
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker() { tasks_.push({}); }

  void post(std::function<void()> task) { tasks_.push(std::move(task)); }

 private:
  void run() {
    while (const std::optional<std::function<void()>> task = tasks_.pop()) {
      if (!*task) {
        return;
      }
      (*task)();
    }
  }

  Queue<std::function<void()>> tasks_;
  std::jthread thread_;
};

/// A message of the client, or the end of them.
struct Incoming {
  std::string message;
  bool isEnd = false;
  std::string fault = {};  ///< of the end: what was wrong with the stream; empty for nothing
};

void readInput(Queue<Incoming>& messages) {
  constexpr std::size_t pieceSize = 1 << 16;
  std::array<char, pieceSize> piece{};
  server::FrameReader frames;
  while (frames.fault().empty()) {
    const ssize_t count = ::read(STDIN_FILENO, piece.data(), piece.size());
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count <= 0) {
      break;
    }
    frames.append({piece.data(), static_cast<std::size_t>(count)});
    while (std::optional<std::string> message = frames.next()) {
      messages.push({*std::move(message)});
    }
  }
  messages.push({"", true, frames.fault()});
}

/// Writes messages of any thread, each in one piece.
class Output {
 public:
  void send(const nlohmann::json& message) {
    // Names of files may be no UTF-8.
    const std::string frame =
        server::framed(message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
    const std::lock_guard lock(mutex_);
    for (std::string_view rest = frame; !rest.empty() && !isClosed_;) {
      const ssize_t count = ::write(STDOUT_FILENO, rest.data(), rest.size());
      isClosed_ = count < 0 && errno != EINTR;
      rest.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
  }

 private:
  std::mutex mutex_;
  bool isClosed_ = false;
};

int serve() {
  // A client that is gone is told by the end of the input.
  std::signal(SIGPIPE, SIG_IGN);
  Output output;
  // Nothing can wake a thread that waits for input, so the process ends without it.
  const auto input = std::make_shared<Queue<Incoming>>();
  std::thread([input] { readInput(*input); }).detach();
  std::optional<Server> served;
  Worker queries;
  Worker checks;
  served.emplace([&output](const nlohmann::json& message) { output.send(message); },
                 [&queries](auto task) { queries.post(std::move(task)); },
                 [&checks](auto task) { checks.post(std::move(task)); });
  std::string fault;
  while (!served->isOver()) {
    const std::optional<Incoming> incoming = input->pop(served->nextDue());
    if (incoming && incoming->isEnd) {
      fault = incoming->fault;
      break;
    }
    if (incoming) {
      served->take(incoming->message);
    }
    served->onTime(Server::Clock::now());
  }
  served->cancelAll();
  if (!fault.empty()) {
    throw std::runtime_error("the client sends no messages: " + fault);
  }
  if (!served->wasShutDown()) {
    throw std::runtime_error("the client went away without 'shutdown'");
  }
  return status::done;
}

}  // namespace

Verb languageServerVerb() {
  return {
      "language-server",
      "Check and format",
      "Serve editors by the Language Server Protocol, over standard input and output",
      R"(An editor starts it: it tells what is wrong while someone types, completes and
explains, renames, formats, and shows where names lead. It is configured by the
editor alone; its documentation tells the settings.

The status is 0 when the editor ended the session as it should.)",
      {{.name = "--stdio", .help = "Accepted, since many editors pass it: there is no other way"}},
      [](const Arguments&) { return serve(); }};
}

}  // namespace kcf
