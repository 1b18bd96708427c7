/// \file
/// Requests, answers and notifications of JSON-RPC, and the life of a session.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace kcf::server {

using nlohmann::json;

namespace errors {
inline constexpr int parseError = -32700;
inline constexpr int invalidRequest = -32600;
inline constexpr int methodNotFound = -32601;
inline constexpr int invalidParams = -32602;
inline constexpr int internalError = -32603;
inline constexpr int notInitialized = -32002;
inline constexpr int requestCancelled = -32800;
inline constexpr int contentModified = -32801;
inline constexpr int requestFailed = -32803;
}  // namespace errors

/// Thrown by what answers a request that cannot be answered.
struct Failure {
  int code;
  std::string message;
};

/// Sends a message; called from any thread.
using Send = std::function<void(const json& message)>;

/// A request that waits for its answer. It gets exactly one: a failure when it is dropped without.
class Call {
 public:
  Call(json id, Send send) : id_(std::move(id)), send_(std::move(send)) {}
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;
  ~Call();

  void answer(json result);
  void fail(const Failure& failure);
  /// Answers with what `step` returns, or with why it failed. Nothing is done for a request that
  /// was cancelled.
  void answerBy(const std::function<json()>& step);
  void cancel() { isCancelled_ = true; }
  [[nodiscard]] bool isCancelled() const { return isCancelled_; }

 private:
  void send(json message);

  json id_;
  Send send_;
  std::atomic<bool> isCancelled_ = false;
  std::atomic<bool> isAnswered_ = false;
};

/// Takes the messages of a client, one after the other, and hands them to who knows their method.
class Dispatcher {
 public:
  using OnRequest = std::function<void(const json& params, const std::shared_ptr<Call>& call)>;
  using OnNotification = std::function<void(const json& params)>;
  using OnAnswer = std::function<void(const json& result)>;

  explicit Dispatcher(Send send) : send_(std::move(send)) {}

  void onRequest(std::string method, OnRequest action);
  void onNotification(std::string method, OnNotification action);

  /// Takes one message, whatever it holds.
  void take(std::string_view message);
  /// Whether the client ended the session.
  [[nodiscard]] bool isOver() const { return state_ == State::over; }
  /// Whether it asked for that before, as it should.
  [[nodiscard]] bool wasShutDown() const { return wasShutDown_; }

  /// Tells the client something. May be called from any thread.
  void notify(std::string_view method, json params) const;
  /// Asks the client; its answer is told to `onAnswer` unless it is an error. Called by the thread
  /// that takes the messages.
  void ask(std::string_view method, json params, OnAnswer onAnswer);

 private:
  enum class State : std::uint8_t { fresh, running, shutDown, over };

  void takeRequest(const std::string& method, const json& id, const json& params);
  void takeNotification(const std::string& method, const json& params);
  void takeAnswer(const json& message);
  void cancel(const json& params);
  void refuse(const json& id, int code, const std::string& text) const;

  Send send_;
  State state_ = State::fresh;
  bool wasShutDown_ = false;
  std::map<std::string, OnRequest, std::less<>> requests_;
  std::map<std::string, OnNotification, std::less<>> notifications_;
  std::map<std::string, std::weak_ptr<Call>> calls_;  // by their ids
  std::map<std::string, OnAnswer> asked_;
  std::uint64_t lastAsked_ = 0;
};

}  // namespace kcf::server
