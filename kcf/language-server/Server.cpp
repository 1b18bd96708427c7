#include "language-server/Server.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <mutex>
#include <utility>

#include "CommandFiles.h"
#include "KESTparse/base/Files.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "language-server/Describe.h"
#include "language-server/Faults.h"
#include "language-server/Naming.h"
#include "language-server/Structure.h"

namespace kcf::server {

using KESTparse::Span;

namespace {

constexpr int logError = 1;

/// What stands below names with slashes between them; null where nothing does.
json at(const json& object, const std::string& names) {
  const json::json_pointer place("/" + names);
  return object.contains(place) ? object.at(place) : json();
}

bool isTrue(const json& object, const std::string& names) {
  const json found = at(object, names);
  return found.is_boolean() && found.get<bool>();
}

bool holds(const json& list, std::string_view text) {
  return list.is_array() && std::any_of(list.begin(), list.end(), [text](const json& each) {
           return each.is_string() && each.get_ref<const std::string&>() == text;
         });
}

std::string uriOf(const json& params) {
  return params.at("textDocument").at("uri").get<std::string>();
}

/// Whether a byte ends the word that someone points at.
bool endsWord(char c) {
  return std::string_view(" \t\r\n(){}=:").find(c) != std::string_view::npos;
}

/// How far a check is, as far as the client wants to know.
struct Progress {
  std::mutex mutex = {};
  bool isShown = false;
  bool isDone = false;
};

json progressOf(const json& token, json value) {
  return {{"token", token}, {"value", std::move(value)}};
}

}  // namespace

Server::Server(Send send, Post queries, Post checks)
    : dispatcher_(std::move(send)), queries_(std::move(queries)), checks_(std::move(checks)) {
  registerLife();
  registerFiles();
  registerQueries();
}

void Server::registerLife() {
  dispatcher_.onRequest("initialize",
                        [this](const json& params, const std::shared_ptr<Call>& call) {
                          call->answer(initialize(params));
                        });
  dispatcher_.onNotification("initialized", [this](const json&) {
    askConfiguration();
    askWatching();
  });
  dispatcher_.onNotification("workspace/didChangeConfiguration", [this](const json& params) {
    if (session_.sendsConfiguration) {
      askConfiguration();
    } else {
      configure(at(params, "settings/kcf"));
    }
  });
  dispatcher_.onNotification("workspace/didChangeWorkspaceFolders", [this](const json& params) {
    for (const json& removed : at(params, "event/removed")) {
      std::erase(folders_, pathOfUri(removed.at("uri")));
    }
    for (const json& added : at(params, "event/added")) {
      folders_.push_back(pathOfUri(added.at("uri")));
    }
  });
}

void Server::registerFiles() {
  dispatcher_.onNotification("textDocument/didOpen", [this](const json& params) { open(params); });
  dispatcher_.onNotification("textDocument/didChange",
                             [this](const json& params) { change(params); });
  dispatcher_.onNotification("textDocument/didClose",
                             [this](const json& params) { close(params); });
  // The files that command files name may be others by now.
  dispatcher_.onNotification("textDocument/didSave", [this](const json&) { checkAll(); });
  dispatcher_.onNotification("workspace/didChangeWatchedFiles",
                             [this](const json&) { checkAll(); });
}

void Server::registerQueries() {
  dispatcher_.onRequest("textDocument/completion",
                        [this](const json& params, const auto& call) { completeAt(params, call); });
  dispatcher_.onRequest("completionItem/resolve", [this](const json& params, const auto& call) {
    call->answer(resolved(session_, params));
  });
  dispatcher_.onRequest("textDocument/hover",
                        [this](const json& params, const auto& call) { hoverAt(params, call); });
  dispatcher_.onRequest("workspace/symbol", [this](const json& params, const auto& call) {
    findSymbols(params, call);
  });
  const auto offsetIn = [](Snapshot& file, const json& params) {
    return file.offsetOf(params.at("position"));
  };
  onQuery("textDocument/definition", [offsetIn](Snapshot& file, const json& params) {
    return definitionOf(file, offsetIn(file, params));
  });
  onQuery("textDocument/references", [offsetIn](Snapshot& file, const json& params) {
    return referencesOf(file, offsetIn(file, params), isTrue(params, "context/includeDeclaration"));
  });
  onQuery("textDocument/documentHighlight", [offsetIn](Snapshot& file, const json& params) {
    return highlightsOf(file, offsetIn(file, params));
  });
  onQuery("textDocument/prepareRename", [offsetIn](Snapshot& file, const json& params) {
    return renamedRange(file, offsetIn(file, params));
  });
  onQuery("textDocument/rename", [offsetIn](Snapshot& file, const json& params) {
    return renameEdits(file, offsetIn(file, params), params.at("newName"));
  });
  onQuery("textDocument/documentSymbol",
          [](Snapshot& file, const json&) { return documentSymbols(file); });
  onQuery("textDocument/foldingRange",
          [](Snapshot& file, const json&) { return foldingRanges(file); });
  onQuery("textDocument/selectionRange", [](Snapshot& file, const json& params) {
    return selectionRanges(file, params.at("positions"));
  });
  onQuery("textDocument/documentLink",
          [](Snapshot& file, const json&) { return documentLinks(file); });
  dispatcher_.onRequest("textDocument/inlayHint", [this](const json& params, const auto& call) {
    if (!settings_.showsHints) {
      call->answer(nullptr);
      return;
    }
    ask([](Snapshot& file,
           const json& asked) { return inlayHints(file, file.spanOf(asked.at("range"))); },
        params, call);
  });
  onQuery("textDocument/semanticTokens/full", [](Snapshot& file, const json&) {
    // Of a large file, a client asks for what it shows.
    return file.size() < largeText ? semanticTokens(file, {0, file.size()}) : json();
  });
  onQuery("textDocument/semanticTokens/range", [](Snapshot& file, const json& params) {
    return semanticTokens(file, file.spanOf(params.at("range")));
  });
  onQuery("textDocument/codeAction", [](Snapshot& file, const json& params) {
    return codeActions(file, file.spanOf(params.at("range")), params.at("context"));
  });
  onQuery("textDocument/formatting", [](Snapshot& file, const json&) {
    return formattingOf(file, {0, file.size()});
  });
  onQuery("textDocument/rangeFormatting", [](Snapshot& file, const json& params) {
    return formattingOf(file, file.spanOf(params.at("range")));
  });
}

void Server::onQuery(const std::string& method, Query query) {
  dispatcher_.onRequest(method,
                        [this, query = std::move(query)](const json& params, const auto& call) {
                          ask(query, params, call);
                        });
}

void Server::ask(const Query& query, const json& params, const std::shared_ptr<Call>& call) {
  std::shared_ptr<Snapshot> file = snapshotOf(uriOf(params), fileOf(params));
  queries_([this, query, params, call, file = std::move(file)] {
    const json token = params.value("workDoneToken", json());
    if (!token.is_null()) {
      dispatcher_.notify("$/progress", progressOf(token, {{"kind", "begin"}, {"title", "kcf"}}));
    }
    call->answerBy([&] { return query(*file, params); });
    if (!token.is_null()) {
      dispatcher_.notify("$/progress", progressOf(token, {{"kind", "end"}}));
    }
  });
}

json Server::initialize(const json& params) {
  readClient(at(params, "capabilities"));
  configure(at(params, "initializationOptions"));
  const json folders = at(params, "workspaceFolders");
  for (const json& folder : folders.is_array() ? folders : json::array()) {
    folders_.push_back(pathOfUri(folder.at("uri")));
  }
  const json root = at(params, "rootUri");
  if (folders_.empty() && root.is_string()) {
    folders_.push_back(pathOfUri(root));
  }
  return {{"capabilities", capabilities()},
          {"serverInfo", {{"name", "kcf"}, {"version", KESTRIX_VERSION}}}};
}

void Server::readClient(const json& client) {
  if (holds(at(client, "general/positionEncodings"), "utf-8")) {
    session_.encoding = Encoding::utf8;
  }
  const std::string item = "textDocument/completion/completionItem";
  session_.takesSnippets = isTrue(client, item + "/snippetSupport");
  session_.takesNestedSymbols =
      isTrue(client, "textDocument/documentSymbol/hierarchicalDocumentSymbolSupport");
  session_.takesRelated = isTrue(client, "textDocument/publishDiagnostics/relatedInformation");
  session_.takesVersionedEdits = isTrue(client, "workspace/workspaceEdit/documentChanges");
  session_.takesProgress = isTrue(client, "window/workDoneProgress");
  session_.sendsConfiguration = isTrue(client, "workspace/configuration");
  session_.watchesFiles = isTrue(client, "workspace/didChangeWatchedFiles/dynamicRegistration");
}

json Server::capabilities() const {
  constexpr int incremental = 2;
  const json progress{{"workDoneProgress", true}};
  json told{
      {"positionEncoding", session_.encoding == Encoding::utf8 ? "utf-8" : "utf-16"},
      {"textDocumentSync", {{"openClose", true}, {"change", incremental}, {"save", true}}},
      {"completionProvider",
       {{"triggerCharacters", {"=", " ", "(", ".", "/"}}, {"resolveProvider", true}}},
      {"renameProvider", {{"prepareProvider", true}, {"workDoneProgress", true}}},
      {"codeActionProvider",
       {{"codeActionKinds", {"quickfix", "source.fixAll"}}, {"workDoneProgress", true}}},
      {"documentLinkProvider", {{"resolveProvider", false}}},
      {"semanticTokensProvider",
       {{"legend", {{"tokenTypes", tokenTypes()}, {"tokenModifiers", json::array()}}},
        {"full", true},
        {"range", true}}},
      {"workspace", {{"workspaceFolders", {{"supported", true}, {"changeNotifications", true}}}}}};
  for (const char* const provider :
       {"hoverProvider", "foldingRangeProvider", "selectionRangeProvider", "inlayHintProvider"}) {
    told[provider] = true;
  }
  for (const char* const provider :
       {"definitionProvider", "referencesProvider", "documentHighlightProvider",
        "documentSymbolProvider", "workspaceSymbolProvider", "documentFormattingProvider",
        "documentRangeFormattingProvider"}) {
    told[provider] = progress;
  }
  return told;
}

void Server::configure(const json& settings) {
  if (!settings.is_object()) {
    return;
  }
  const Settings before = settings_;
  settings_.readsFiles = settings.value("readFiles", settings_.readsFiles);
  settings_.showsHints = settings.value("inlayHints", settings_.showsHints);
  settings_.directory = settings.value("directory", settings_.directory);
  constexpr int longest = 10000;
  settings_.checkDelay = std::chrono::milliseconds(std::clamp(
      settings.value("checkDelay", static_cast<int>(settings_.checkDelay.count())), 0, longest));
  if (before.readsFiles != settings_.readsFiles || before.directory != settings_.directory) {
    for (auto& [uri, file] : files_) {
      file->directory = directoryOf(uri);
    }
    checkAll();
  }
}

void Server::askConfiguration() {
  if (session_.sendsConfiguration) {
    dispatcher_.ask("workspace/configuration", {{"items", {{{"section", "kcf"}}}}},
                    [this](const json& result) {
                      if (result.is_array() && !result.empty()) {
                        configure(result.front());
                      }
                    });
  }
}

void Server::askWatching() {
  if (session_.watchesFiles) {
    const json watched{{"watchers", {{{"globPattern", "**/*.{2dm,kgf,txt,dat,csv,h5}"}}}}};
    dispatcher_.ask("client/registerCapability",
                    {{"registrations",
                      {{{"id", "files"},
                        {"method", "workspace/didChangeWatchedFiles"},
                        {"registerOptions", watched}}}}},
                    {});
  }
}

std::string Server::directoryOf(const std::string& uri) const {
  const std::string path = pathOfUri(uri);
  const std::filesystem::path folder =
      !path.empty() ? std::filesystem::path(path).parent_path()
                    : std::filesystem::path(folders_.empty() ? "" : folders_.front());
  return (folder / settings_.directory).lexically_normal().string();
}

void Server::open(const json& params) {
  const json& document = params.at("textDocument");
  const auto uri = document.at("uri").get<std::string>();
  auto file = std::make_unique<OpenFile>(document.at("text").get<std::string>());
  file->version = document.at("version").get<std::int64_t>();
  file->directory = directoryOf(uri);
  OpenFile& opened = *(files_[uri] = std::move(file));
  check(uri, opened, false);
}

void Server::change(const json& params) {
  OpenFile& file = fileOf(params);
  for (const json& each : params.at("contentChanges")) {
    apply(file, each);
  }
  const json version = at(params, "textDocument/version");
  if (version.is_number_integer()) {
    file.version = version.get<std::int64_t>();
  }
  if (file.checked != nullptr) {
    file.checked->cancel();
    file.checked.reset();
  }
  file.checkDue = Clock::now() + settings_.checkDelay;
}

void Server::apply(OpenFile& file, const json& change) {
  const auto& text = change.at("text").get_ref<const std::string&>();
  const std::string& content = file.text.content();
  Span replaced{0, content.size()};
  if (change.contains("range")) {
    const json& range = change.at("range");
    const auto offsetOf = [&](const char* end) {
      return file.text.lines().offsetAt(content, positionOf(range.at(end)), session_.encoding);
    };
    replaced.begin = offsetOf("start");
    replaced.end = std::max(replaced.begin, offsetOf("end"));
  }
  promote(file);
  for (Version* const version : {&file.last, &file.read}) {
    version->unchanged = std::min(version->unchanged, replaced.begin);
    version->isCurrent = false;
  }
  file.text.replace(replaced, text);
}

void Server::close(const json& params) {
  const std::string uri = uriOf(params);
  const auto file = files_.find(uri);
  if (file == files_.end()) {
    return;
  }
  if (file->second->last.file != nullptr) {
    file->second->last.file->cancel();
  }
  files_.erase(file);
  // Behind a check that may still tell of the file.
  checks_([this, uri] {
    dispatcher_.notify("textDocument/publishDiagnostics",
                       {{"uri", uri}, {"diagnostics", json::array()}});
  });
}

Server::OpenFile& Server::fileOf(const json& params) {
  const auto file = files_.find(uriOf(params));
  if (file == files_.end()) {
    throw Failure{errors::invalidParams, "the file is not open: " + uriOf(params)};
  }
  return *file->second;
}

std::shared_ptr<Snapshot> Server::snapshotOf(const std::string& uri, OpenFile& file) {
  promote(file);
  if (!file.last.isCurrent) {
    release(std::move(file.last.file));
    file.last = {std::make_shared<Snapshot>(session_,
                                            Snapshot::Origin{.uri = uri,
                                                             .version = file.version,
                                                             .directory = file.directory,
                                                             .readsFiles = settings_.readsFiles,
                                                             .memory = file.memory},
                                            file.text.content(), file.text.lines()),
                 file.text.content().size(), true};
  }
  return file.last.file;
}

/// Keeps the newest version that was read.
void Server::promote(OpenFile& file) {
  if (file.last.file != nullptr && file.last.file->isRead() && file.read.file != file.last.file) {
    release(std::move(file.read.file));
    file.read = file.last;
  }
}

/// Lets another thread destroy what takes long to destroy.
void Server::release(std::shared_ptr<Snapshot> file) const {
  if (file != nullptr && file->size() > largeText) {
    queries_([file = std::move(file)] {});
  }
}

void Server::check(const std::string& uri, OpenFile& file, bool mayBeCancelled) {
  file.checkDue.reset();
  const std::shared_ptr<Snapshot> snapshot = snapshotOf(uri, file);
  if (mayBeCancelled) {
    file.checked = snapshot;
  }
  post(snapshot);
}

void Server::post(const std::shared_ptr<Snapshot>& file) {
  const auto progress = std::make_shared<Progress>();
  const json token = fmt::format("kcf-check-{}", ++lastToken_);
  if (session_.takesProgress && file->size() > largeText) {
    dispatcher_.ask(
        "window/workDoneProgress/create", {{"token", token}}, [this, token, progress](const json&) {
          const std::lock_guard lock(progress->mutex);
          if (!progress->isDone) {
            progress->isShown = true;
            dispatcher_.notify(
                "$/progress",
                progressOf(token, {{"kind", "begin"}, {"title", "kcf: checking the file"}}));
          }
        });
  }
  checks_([this, file, token, progress] {
    try {
      const json found = diagnosticsOf(*file);
      dispatcher_.notify("textDocument/publishDiagnostics", found);
    } catch (const KESTparse::Cancelled&) {
      // A newer text is checked.
    } catch (const std::exception& fault) {
      dispatcher_.notify("window/logMessage",
                         {{"type", logError},
                          {"message", file->origin().uri + " cannot be checked: " + fault.what()}});
    }
    const std::lock_guard lock(progress->mutex);
    progress->isDone = true;
    if (progress->isShown) {
      dispatcher_.notify("$/progress", progressOf(token, {{"kind", "end"}}));
    }
  });
}

void Server::checkAll() {
  for (auto& [uri, file] : files_) {
    promote(*file);
    file->last.isCurrent = false;
    file->checkDue = Clock::now();
  }
}

std::optional<Server::Clock::time_point> Server::nextDue() const {
  std::optional<Clock::time_point> next;
  for (const auto& [uri, file] : files_) {
    if (file->checkDue && (!next || *file->checkDue < *next)) {
      next = file->checkDue;
    }
  }
  return next;
}

void Server::onTime(Clock::time_point now) {
  for (auto& [uri, file] : files_) {
    if (file->checkDue && *file->checkDue <= now) {
      check(uri, *file, true);
    }
  }
}

void Server::cancelAll() {
  for (auto& [uri, file] : files_) {
    if (file->last.file != nullptr) {
      file->last.file->cancel();
    }
  }
}

Typing Server::typingAt(const json& params, bool atEndOfWord) {
  OpenFile& file = fileOf(params);
  const std::string& text = file.text.content();
  std::size_t offset =
      file.text.lines().offsetAt(text, positionOf(params.at("position")), session_.encoding);
  while (atEndOfWord && offset < text.size() && !endsWord(text[offset])) {
    ++offset;
  }
  Typing typing{.session = &session_, .cursor = {}, .range = {}, .item = {}};
  OldTree old;
  if (text.size() < largeText) {
    typing.file = snapshotOf(uriOf(params), file);
    old = {&typing.file->tree(), text.size()};
  } else {
    promote(file);
    typing.file = file.read.file;
    if (typing.file != nullptr) {
      old = {&typing.file->tree(), file.read.unchanged};
    }
  }
  typing.cursor = cursorAt(text, offset, old);
  const auto positionAt = [&](std::size_t place) {
    return jsonOf(file.text.lines().positionAt(text, place, session_.encoding));
  };
  typing.range = {{"start", positionAt(typing.cursor.word.begin)},
                  {"end", positionAt(typing.cursor.word.end)}};
  typing.item = typing.cursor.word.in(text);
  typing.directory = file.directory;
  return typing;
}

void Server::completeAt(const json& params, const std::shared_ptr<Call>& call) {
  Typing typing = typingAt(params, false);
  // A blank asks for values; in front of a name it is mere indentation.
  if (typing.cursor.stands == Cursor::Stands::inName &&
      at(params, "context/triggerCharacter") == " ") {
    call->answer(nullptr);
    return;
  }
  if (needsFiles(typing)) {
    queries_(
        [typing = std::move(typing), call] { call->answerBy([&] { return complete(typing); }); });
  } else {
    call->answer(complete(typing));
  }
}

void Server::hoverAt(const json& params, const std::shared_ptr<Call>& call) {
  const Typing typing = typingAt(params, true);
  const KESTparse::Place place = placeOf(typing);
  std::string text;
  const auto add = [](std::string& all, const std::string& more) {
    all += (all.empty() || more.empty() ? "" : "\n\n") + more;
  };
  const bool isValue = typing.cursor.stands == Cursor::Stands::inValue;
  const std::string name = isValue ? typing.cursor.tag : typing.item;
  if (place.block != nullptr && typing.cursor.stands != Cursor::Stands::nowhere) {
    const int tag = place.block->getLogicalTagPosition(name);
    const int block = isValue ? -1 : place.block->getLogicalBlockPosition(name);
    if (block >= 0) {
      const auto& found = place.block->getLogicalBlock(static_cast<std::size_t>(block));
      add(text, describeBlock({&found, KESTparse::pathOf(place.path, found)}));
    } else if (tag >= 0) {
      const auto& found = place.block->getLogicalTag(static_cast<std::size_t>(tag));
      add(text, isValue ? describeChoice(place, found, typing.item, session_.supplement) : "");
      add(text, describeTag(place, found, session_.supplement));
    }
  }
  if (text.empty()) {
    call->answer(nullptr);
    return;
  }
  const auto hoverOf = [range = typing.range](const std::string& all) {
    return json{{"contents", {{"kind", "markdown"}, {"value", all}}}, {"range", range}};
  };
  if (!needsFiles(typing)) {
    call->answer(hoverOf(text));
    return;
  }
  queries_(
      [this, params, call, text, add, hoverOf, file = snapshotOf(uriOf(params), fileOf(params))] {
        call->answerBy([&] {
          const std::size_t offset = file->offsetOf(params.at("position"));
          const std::string path = file->fileOf(file->nodeAround(offset));
          std::string all = path.empty() ? usesOf(*file, offset) : session_.files.of(path).summary;
          add(all, text);
          return hoverOf(all);
        });
      });
}

void Server::findSymbols(const json& params, const std::shared_ptr<Call>& call) {
  std::vector<std::shared_ptr<Snapshot>> opened;
  for (auto& [uri, file] : files_) {
    opened.push_back(snapshotOf(uri, *file));
  }
  queries_([this, call, opened, folders = folders_, query = params.value("query", "")] {
    call->answerBy([&] {
      json symbols = json::array();
      for (const auto& file : opened) {
        addSymbols(*file, query, symbols);
      }
      for (const std::string& path : findCommandFiles(folders).paths) {
        const std::string uri = uriOfPath(path);
        const bool isOpen = std::any_of(opened.begin(), opened.end(), [&uri](const auto& file) {
          return file->origin().uri == uri;
        });
        KESTparse::FileText text =
            isOpen || call->isCancelled() ? KESTparse::FileText{} : KESTparse::readFile(path);
        if (text.wasRead) {
          Lines lines(text.content);
          Snapshot file(session_, {.uri = uri}, std::move(text.content), std::move(lines));
          addSymbols(file, query, symbols);
        }
      }
      return symbols;
    });
  });
}

}  // namespace kcf::server
