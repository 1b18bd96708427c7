#include "language-server/Dispatcher.h"

#include <exception>
#include <utility>

#include "KESTparse/document/Document.h"

namespace kcf::server {
namespace {

json envelope() {
  return {{"jsonrpc", "2.0"}};
}

json errorOf(const Failure& failure) {
  return {{"code", failure.code}, {"message", failure.message}};
}

/// Whether brackets stand within each other deeper than any message needs. What is made of a
/// message is copied level by level, for which the stack must do.
bool isTooDeep(std::string_view message) {
  constexpr int deepest = 200;
  int depth = 0;
  bool isInText = false;
  for (std::size_t at = 0; at < message.size() && depth <= deepest; ++at) {
    const char c = message[at];
    if (isInText) {
      at += c == '\\' ? 1U : 0U;
      isInText = c != '"';
    } else if (c == '"') {
      isInText = true;
    } else {
      depth += c == '[' || c == '{' ? 1 : c == ']' || c == '}' ? -1 : 0;
    }
  }
  return depth > deepest;
}

/// Whether a value can tell requests apart.
bool isRequestId(const json& id) {
  return id.is_string() || id.is_number_integer();
}

/// Runs `step`; a failure of it is told to `fail`.
template <class Step, class Fail>
void guarded(Step&& step, Fail&& fail) {
  try {
    step();
  } catch (const Failure& failure) {
    fail(failure);
  } catch (const KESTparse::Cancelled&) {
    fail(Failure{errors::contentModified, "the file was changed meanwhile"});
  } catch (const json::exception& exception) {
    fail(Failure{errors::invalidParams, exception.what()});
  } catch (const std::exception& exception) {
    fail(Failure{errors::internalError, exception.what()});
  }
}

}  // namespace

Call::~Call() {
  if (!isAnswered_) {
    try {
      fail({errors::internalError, "the request was dropped"});
    } catch (...) {
      // There is not the memory to say it.
    }
  }
}

void Call::send(json message) {
  if (!isAnswered_.exchange(true)) {
    message["id"] = id_;
    send_(message);
  }
}

void Call::answer(json result) {
  json message = envelope();
  message["result"] = std::move(result);
  send(std::move(message));
}

void Call::fail(const Failure& failure) {
  json message = envelope();
  message["error"] = errorOf(failure);
  send(std::move(message));
}

void Call::answerBy(const std::function<json()>& step) {
  guarded(
      [&] {
        if (isCancelled()) {
          throw Failure{errors::requestCancelled, "the request was cancelled"};
        }
        answer(step());
      },
      [this](const Failure& failure) { fail(failure); });
}

void Dispatcher::onRequest(std::string method, OnRequest action) {
  requests_.emplace(std::move(method), std::move(action));
}

void Dispatcher::onNotification(std::string method, OnNotification action) {
  notifications_.emplace(std::move(method), std::move(action));
}

void Dispatcher::refuse(const json& id, int code, const std::string& text) const {
  json message = envelope();
  message["id"] = id;
  message["error"] = errorOf({code, text});
  send_(message);
}

void Dispatcher::take(std::string_view message) {
  if (isTooDeep(message)) {
    refuse(nullptr, errors::invalidRequest, "the message is nested too deeply");
    return;
  }
  json parsed = json::parse(message, nullptr, false);
  if (parsed.is_discarded()) {
    refuse(nullptr, errors::parseError, "the message is no JSON");
    return;
  }
  const bool isObject = parsed.is_object();
  const json id = isObject ? parsed.value("id", json()) : json();
  const bool isId = isRequestId(id);
  const auto method = isObject ? parsed.find("method") : parsed.end();
  if (!isObject || (method == parsed.end() && !isId)) {
    refuse(nullptr, errors::invalidRequest, "the message is neither a request nor an answer");
    return;
  }
  if (method == parsed.end()) {
    takeAnswer(parsed);
    return;
  }
  // An open file is as large as its text: it is moved.
  json params = json::object();
  if (const auto given = parsed.find("params"); given != parsed.end() && !given->is_null()) {
    params = std::move(*given);
  }
  if (!method->is_string() || !params.is_structured() || (!id.is_null() && !isId)) {
    refuse(isId ? id : json(), errors::invalidRequest, "the request is not formed as requests are");
  } else if (isId) {
    takeRequest(*method, id, params);
  } else {
    takeNotification(*method, params);
  }
}

void Dispatcher::takeRequest(const std::string& method, const json& id, const json& params) {
  if (state_ == State::shutDown || state_ == State::over) {
    refuse(id, errors::invalidRequest, "the session was shut down");
    return;
  }
  if ((state_ == State::fresh) != (method == "initialize")) {
    const bool isFresh = state_ == State::fresh;
    refuse(id, isFresh ? errors::notInitialized : errors::invalidRequest,
           isFresh ? "the session is not initialized" : "the session is initialized already");
    return;
  }
  if (method == "shutdown") {
    state_ = State::shutDown;
    wasShutDown_ = true;
    Call(id, send_).answer(nullptr);
    return;
  }
  const auto action = requests_.find(method);
  if (action == requests_.end()) {
    refuse(id, errors::methodNotFound, "there is no method '" + method + "'");
    return;
  }
  const auto call = std::make_shared<Call>(id, send_);
  constexpr std::size_t mostForgotten = 256;
  if (calls_.size() > mostForgotten) {
    std::erase_if(calls_, [](const auto& each) { return each.second.expired(); });
  }
  calls_[id.dump()] = call;
  guarded(
      [&] {
        action->second(params, call);
        if (method == "initialize") {
          state_ = State::running;
        }
      },
      [&call](const Failure& failure) { call->fail(failure); });
}

void Dispatcher::takeNotification(const std::string& method, const json& params) {
  if (method == "exit") {
    state_ = State::over;
    return;
  }
  if (method == "$/cancelRequest") {
    cancel(params);
    return;
  }
  const auto action = notifications_.find(method);
  if (state_ != State::running || action == notifications_.end()) {
    return;
  }
  guarded([&] { action->second(params); },
          [&](const Failure& failure) {
            constexpr int error = 1;
            notify("window/logMessage",
                   {{"type", error}, {"message", method + ": " + failure.message}});
          });
}

void Dispatcher::cancel(const json& params) {
  const auto id = params.find("id");
  const bool isId = id != params.end() && isRequestId(*id);
  const auto call = isId ? calls_.find(id->dump()) : calls_.end();
  if (call == calls_.end()) {
    return;
  }
  if (const std::shared_ptr<Call> running = call->second.lock()) {
    running->cancel();
  }
}

void Dispatcher::takeAnswer(const json& message) {
  const auto asked = asked_.find(message.at("id").dump());
  if (asked == asked_.end()) {
    return;
  }
  const OnAnswer onAnswer = std::move(asked->second);
  asked_.erase(asked);
  const auto result = message.find("result");
  if (result != message.end() && onAnswer) {
    guarded([&] { onAnswer(*result); }, [](const Failure&) {});
  }
}

void Dispatcher::notify(std::string_view method, json params) const {
  json message = envelope();
  message["method"] = method;
  message["params"] = std::move(params);
  send_(message);
}

void Dispatcher::ask(std::string_view method, json params, OnAnswer onAnswer) {
  const json id = "kcf-" + std::to_string(++lastAsked_);
  asked_[id.dump()] = std::move(onAnswer);
  json message = envelope();
  message["id"] = id;
  message["method"] = method;
  message["params"] = std::move(params);
  send_(message);
}

}  // namespace kcf::server
