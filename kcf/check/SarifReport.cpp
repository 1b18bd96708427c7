#include "check/SarifReport.h"

#include <fmt/format.h>

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string_view>
#include <utility>

#include "KESTparse/document/Codes.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/RuleTable.h"
#include "check/JsonReport.h"

namespace kcf {
namespace {

using KESTparse::Diagnostic;
using KESTparse::Severity;
using nlohmann::ordered_json;

#ifndef KESTRIX_VERSION
#define KESTRIX_VERSION "unversioned"
#endif

std::string sentence(std::string_view text) {
  return text.empty() || text.ends_with('.') ? std::string(text) : std::string(text) + ".";
}

/// A path as a URI; a relative one stays so.
std::string uriOf(std::string_view path) {
  constexpr std::string_view plain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  std::string uri = path.starts_with('/') ? "file://" : "";
  for (const char c : path) {
    if (plain.find(c) != std::string_view::npos) {
      uri += c;
    } else {
      uri += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
  }
  return uri;
}

ordered_json regionOf(const ShownPlace& place) {
  return {{"startLine", place.begin.line},
          {"startColumn", place.begin.column},
          {"endLine", place.end.line},
          {"endColumn", place.end.column}};
}

ordered_json locationOf(const ShownPlace& place) {
  return {{"physicalLocation",
           {{"artifactLocation", {{"uri", uriOf(place.file)}}}, {"region", regionOf(place)}}}};
}

ordered_json fixOf(const CheckedFile& file, const KESTparse::Fix& fix) {
  ordered_json replacements = ordered_json::array();
  for (const KESTparse::Edit& edit : fix.edits) {
    replacements.push_back({{"deletedRegion", regionOf(file.placeOf(edit.at))},
                            {"insertedContent", {{"text", edit.text}}}});
  }
  ordered_json change{{"artifactLocation", {{"uri", uriOf(file.path())}}},
                      {"replacements", std::move(replacements)}};
  return {{"description", {{"text", sentence(fix.message)}}},
          {"artifactChanges", ordered_json::array({std::move(change)})}};
}

/// The same for the same finding when lines in front of it come and go.
std::uint64_t fingerprintOf(const CheckedFile& file, const Diagnostic& told) {
  // Of a finding in another file it is the line that names the file.
  const ShownPlace place = file.placeOf(told.at.at);
  std::string_view line = file.lines().line(place.begin.line).in(file.text());
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  std::uint64_t hash = 14695981039346656037ULL;
  for (const std::string_view part : {std::string_view(file.path()), std::string_view(told.code),
                                      line, std::string_view(told.message)}) {
    for (const char c : part) {
      hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
    }
    hash = (hash ^ 0xffU) * 1099511628211ULL;
  }
  return hash;
}

ordered_json resultOf(const CheckedFile& file, const Diagnostic& told) {
  const std::string help = told.help.empty() ? "" : " To mend it: " + sentence(told.help);
  ordered_json result{{"ruleId", told.code},
                      {"level", told.severity == Severity::error ? "error" : "warning"},
                      {"message", {{"text", sentence(told.message) + help}}},
                      {"locations", ordered_json::array({locationOf(file.placeOf(told.at))})}};
  for (const KESTparse::Related& related : told.related) {
    ordered_json location = locationOf(file.placeOf(related.at));
    location["message"] = {{"text", sentence(related.message)}};
    result["relatedLocations"].push_back(std::move(location));
  }
  for (const KESTparse::Fix& fix : told.fixes) {
    result["fixes"].push_back(fixOf(file, fix));
  }
  return result;
}

/// What is told of the codes that were found.
ordered_json rulesOf(const std::set<std::string>& codes) {
  std::map<std::string, KESTparse::RuleFacts> ofBlocks;
  const KESTparse::KestrixInputRoot root;
  for (const KESTparse::Place& place : KESTparse::placesOf(root)) {
    for (const KESTparse::RuleFacts& rule : KESTparse::rulesOf(*place.block)) {
      ofBlocks.try_emplace(KESTparse::ruleCode(place.block->getName(), rule.name), rule);
    }
  }
  ordered_json rules = ordered_json::array();
  for (const std::string& code : codes) {
    std::string summary = code;
    std::string help = "kcf explain " + code;
    if (const KESTparse::CodeFacts* const facts = KESTparse::findCode(code)) {
      summary = facts->summary;
      help = facts->meaning;
    } else if (const auto rule = ofBlocks.find(code); rule != ofBlocks.end()) {
      summary = KESTparse::withoutValues(rule->second.sentence);
      help = KESTparse::withoutValues(rule->second.help);
    }
    rules.push_back({{"id", code},
                     {"shortDescription", {{"text", sentence(summary)}}},
                     {"fullDescription", {{"text", sentence(help)}}},
                     {"help", {{"text", sentence(help)}}}});
  }
  return rules;
}

}  // namespace

void SarifReport::render(const CheckedFile& file, Part& part) const {
  std::map<std::uint64_t, std::size_t> seen;
  for (const Diagnostic& told : file.diagnostics()) {
    ordered_json result = resultOf(file, told);
    const std::uint64_t fingerprint = fingerprintOf(file, told);
    result["partialFingerprints"] = {
        {"finding/v1", fmt::format("{:016x}:{}", fingerprint, ++seen[fingerprint])}};
    part.diagnostics += (part.diagnostics.empty() ? "\n    " : ",\n    ") + lineOf(result);
    part.codes.insert(told.code);
  }
}

void SarifReport::add(Part part) {
  codes_.merge(part.codes);
  if (!part.diagnostics.empty()) {
    results_ += (results_.empty() ? "" : ",") + part.diagnostics;
  }
}

void SarifReport::finish() {
  const ordered_json tool{{"driver",
                           {{"name", "kcf"},
                            {"version", KESTRIX_VERSION},
                            {"semanticVersion", KESTRIX_VERSION ".0"},
                            {"rules", rulesOf(codes_)}}}};
  *out_ << "{\n  \"$schema\": \"https://json.schemastore.org/sarif-2.1.0.json\",\n"
        << "  \"version\": \"2.1.0\",\n  \"runs\": [{\n  \"tool\": " << lineOf(tool)
        << ",\n  \"columnKind\": \"unicodeCodePoints\",\n  \"results\": [" << results_
        << "]\n  }]\n}\n";
}

}  // namespace kcf
