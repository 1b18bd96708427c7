/// \file
/// Fuzz target: the language server lives through any stream of bytes, answers each request once,
/// and keeps the text that the client edits.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "FuzzRun.h"
#include "language-server/Framing.h"
#include "language-server/Server.h"

namespace {

using kcf::server::Server;
using nlohmann::json;

void require(bool holds, const char* what) {
  if (!holds) {
    std::fputs(what, stderr);
    std::fputs("\n", stderr);
    std::abort();
  }
}

/// A server whose tasks run at once, and what it sends.
class Served {
 public:
  Served()
      : server_([this](const json& message) { take(message); },
                [](const std::function<void()>& task) { task(); },
                [](const std::function<void()>& task) { task(); }) {}

  void send(const std::string& message) {
    server_.take(message);
    server_.onTime(Server::Clock::time_point::max());
  }
  void send(json message) {
    message["jsonrpc"] = "2.0";
    send(message.dump(-1, ' ', false, json::error_handler_t::replace));
  }
  [[nodiscard]] bool isOver() const { return server_.isOver(); }

  std::map<std::string, int> answers;  // by id

 private:
  void take(const json& message) {
    require(!message.dump(-1, ' ', false, json::error_handler_t::replace).empty(), "no message");
    if (!message.contains("method")) {
      ++answers[message.at("id").dump()];
    }
  }

  Server server_;
};

/// The bytes as they come over the wire.
void runStream(std::string_view bytes) {
  Served served;
  kcf::server::FrameReader frames;
  constexpr std::size_t pieceSize = 7;
  for (; !bytes.empty() && !served.isOver();
       bytes.remove_prefix(std::min(pieceSize, bytes.size()))) {
    frames.append(bytes.substr(0, pieceSize));
    while (const auto message = frames.next()) {
      served.send(*message);
    }
  }
}

/// A session that opens a text and asks everything at a place of it, edits it there and asks again.
void runSession(std::string_view bytes) {
  const std::string uri = "untitled:fuzz";
  const json document{{"uri", uri}};
  Served served;
  const auto sized = [&bytes](std::size_t most) {
    const std::size_t number = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(std::min<std::size_t>(1, bytes.size()));
    return number % (most + 1);
  };
  served.send(
      {{"id", 0},
       {"method", "initialize"},
       {"params",
        {{"capabilities", json::object()}, {"initializationOptions", {{"readFiles", false}}}}}});
  const std::size_t line = sized(UINT8_MAX);
  const std::size_t character = sized(UINT8_MAX);
  const std::string fresh(bytes.substr(0, sized(UINT8_MAX)));
  served.send({{"method", "textDocument/didOpen"},
               {"params",
                {{"textDocument", {{"uri", uri}, {"version", 1}, {"text", std::string(bytes)}}}}}});
  const json at{{"line", line}, {"character", character}};
  const json range{{"start", at}, {"end", {{"line", line + 1}, {"character", 0}}}};
  int id = 0;
  for (int round = 0; round < 2; ++round) {
    for (const char* const method :
         {"completion", "hover", "definition", "references", "documentHighlight", "prepareRename",
          "rename", "documentSymbol", "foldingRange", "selectionRange", "documentLink", "inlayHint",
          "semanticTokens/full", "semanticTokens/range", "codeAction", "formatting",
          "rangeFormatting"}) {
      served.send({{"id", ++id},
                   {"method", std::string("textDocument/") + method},
                   {"params",
                    {{"textDocument", document},
                     {"position", at},
                     {"positions", {at}},
                     {"range", range},
                     {"newName", "fresh"},
                     {"context", {{"includeDeclaration", true}}}}}});
      require(served.answers[std::to_string(id)] == 1, method);
    }
    served.send({{"method", "textDocument/didChange"},
                 {"params",
                  {{"textDocument", {{"uri", uri}, {"version", round + 2}}},
                   {"contentChanges", {{{"range", range}, {"text", fresh}}}}}}});
  }
}

/// The lines of an edited text are those of the text as a whole.
void runEdits(std::string_view bytes) {
  kcf::server::Text text{std::string(bytes)};
  while (bytes.size() > 3) {
    const auto number = [&bytes](std::size_t i) {
      return static_cast<std::size_t>(static_cast<unsigned char>(bytes[i]));
    };
    const std::size_t begin = std::min(number(0), text.content().size());
    const std::size_t end = std::min(begin + number(1) % 8, text.content().size());
    text.replace({begin, end}, bytes.substr(2, number(2) % 4));
    bytes.remove_prefix(3);
    const kcf::server::Lines fresh(text.content());
    require(fresh.count() == text.lines().count(), "lines were lost");
    for (std::size_t i = 0; i < fresh.count(); ++i) {
      require(fresh.line(text.content(), i) == text.lines().line(text.content(), i),
              "a line begins elsewhere");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::asText(data, size);
  if (bytes.empty()) {
    return 0;
  }
  switch (bytes.front() % 3) {
    case 0:
      runStream(bytes.substr(1));
      break;
    case 1:
      runSession(bytes.substr(1));
      break;
    default:
      runEdits(bytes.substr(1));
  }
  return 0;
}
