#include "language-server/Faults.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KESTparse/document/Codes.h"
#include "KESTparse/document/Diff.h"
#include "KESTparse/document/Format.h"
#include "check/Mending.h"

namespace kcf::server {

using KESTparse::Diagnostic;
using KESTparse::Fix;
using KESTparse::Related;
using KESTparse::Severity;
using KESTparse::TextPlace;

namespace {

constexpr std::string_view fixAll = "source.fixAll";
constexpr std::string_view quickFix = "quickfix";

/// A place in a file that the command file names. Its columns count code points, which is what
/// clients count in plain letters.
json locationIn(Snapshot& file, const TextPlace& place) {
  const auto path =
      std::filesystem::absolute(std::filesystem::path(file.origin().directory) / place.file);
  const auto fromOne = [](std::uint32_t number) {
    return static_cast<std::size_t>(number == 0 ? 0 : number - 1);
  };
  const std::size_t line = fromOne(place.line);
  return {{"uri", uriOfPath(path.lexically_normal().string())},
          {"range",
           {{"start", jsonOf({line, fromOne(place.column)})},
            {"end", jsonOf({line, fromOne(std::max(place.column, place.endColumn))})}}}};
}

json relatedOf(Snapshot& file, const Diagnostic& told) {
  json related = json::array();
  // What is wrong in another file is told at the tag that names it, with the place beside it.
  if (!told.at.file.empty()) {
    related.push_back({{"location", locationIn(file, told.at)}, {"message", "it is here"}});
  }
  for (const Related& each : told.related) {
    related.push_back({{"location", each.at.file.empty() ? file.locationOf(each.at.at)
                                                         : locationIn(file, each.at)},
                       {"message", each.message}});
  }
  return related;
}

json faultOf(Snapshot& file, const Diagnostic& told) {
  constexpr int error = 1;
  constexpr int warning = 2;
  constexpr int unnecessary = 1;
  json diagnostic{{"range", file.rangeOf(told.at.at)},
                  {"severity", told.severity == Severity::error ? error : warning},
                  {"code", told.code},
                  {"source", "kcf"},
                  {"message", told.message + (told.help.empty() ? "" : "\n" + told.help)}};
  if (told.code == KESTparse::code::unusedTag) {
    diagnostic["tags"] = {unnecessary};
  }
  json related = file.session().takesRelated ? relatedOf(file, told) : json::array();
  if (!related.empty()) {
    diagnostic["relatedInformation"] = std::move(related);
  }
  return diagnostic;
}

json workspaceEdit(Snapshot& file, const std::vector<KESTparse::Edit>& edits) {
  json list = file.editsOf(edits);
  if (!file.session().takesVersionedEdits) {
    return {{"changes", {{file.origin().uri, std::move(list)}}}};
  }
  const json version = file.origin().version ? json(*file.origin().version) : json();
  return {{"documentChanges",
           {{{"textDocument", {{"uri", file.origin().uri}, {"version", version}}},
             {"edits", std::move(list)}}}}};
}

/// Whether a kind of actions is asked for.
bool isWanted(const json& context, std::string_view kind) {
  const auto only = context.find("only");
  return only == context.end() || !only->is_array() || only->empty() ||
         std::any_of(only->begin(), only->end(), [kind](const json& each) {
           const std::string wanted = each.is_string() ? each.get<std::string>() : "?";
           return kind.starts_with(wanted) &&
                  (kind.size() == wanted.size() || wanted.empty() || kind[wanted.size()] == '.');
         });
}

void addFixes(Snapshot& file, const Diagnostic& told, json& actions) {
  bool isPreferred = true;
  for (const Fix& fix : told.fixes) {
    actions.push_back({{"title", fix.message},
                       {"kind", quickFix},
                       {"diagnostics", {faultOf(file, told)}},
                       {"isPreferred", isPreferred},
                       {"edit", workspaceEdit(file, fix.edits)}});
    isPreferred = false;
  }
}

void addFixAll(Snapshot& file, json& actions) {
  const std::string& text = file.tree().text();
  const Mended mended = mend(text, [&](std::string content) {
    return std::make_unique<KESTparse::Document>(std::move(content), file.session().schema,
                                                 file.options());
  });
  if (!mended.done.empty()) {
    actions.push_back({{"title", "apply all certain fixes"},
                       {"kind", fixAll},
                       {"edit", workspaceEdit(file, KESTparse::changeEdits(
                                                        text, mended.document->syntax().text()))}});
  }
}

}  // namespace

json diagnosticsOf(Snapshot& file) {
  json list = json::array();
  for (const Diagnostic& told : file.check()) {
    list.push_back(faultOf(file, told));
  }
  json params{{"uri", file.origin().uri}, {"diagnostics", std::move(list)}};
  if (file.origin().version) {
    params["version"] = *file.origin().version;
  }
  return params;
}

json codeActions(Snapshot& file, KESTparse::Span range, const json& context) {
  json actions = json::array();
  bool hasFixes = false;
  for (const Diagnostic& told : file.check()) {
    hasFixes = hasFixes || !told.fixes.empty();
    const bool isHere = told.at.at.begin <= range.end && range.begin <= told.at.at.end;
    if (isHere && isWanted(context, quickFix)) {
      addFixes(file, told, actions);
    }
  }
  if (hasFixes && isWanted(context, fixAll)) {
    addFixAll(file, actions);
  }
  return actions;
}

json formattingOf(Snapshot& file, KESTparse::Span range) {
  const KESTparse::SyntaxTree& tree = file.tree();
  if (!tree.faults().empty()) {
    return nullptr;
  }
  return file.editsOf(KESTparse::formatEdits(tree, file.session().schema, range));
}

}  // namespace kcf::server
