#include "vocabulary/Supplement.h"

#include <nlohmann/json.hpp>

#include "Assets.h"
#include "KESTparse/base/Conversions.h"

namespace kcf {

Supplement::Supplement() {
  const nlohmann::json file = nlohmann::json::parse(asset("vocabulary/supplement.json"));
  for (const auto& entry : file.at("blocks")) {
    const nlohmann::json tellings = entry.value("tags", nlohmann::json::object());
    const nlohmann::json needs = entry.value("needs", nlohmann::json::object());
    for (const std::string path : entry.at("paths")) {
      if (entry.contains("description")) {
        blockDescriptions_[path] = entry["description"];
      }
      for (const auto& [tags, told] : tellings.items()) {
        for (const std::string& tag : KESTparse::split("|", tags)) {
          add(path, tag, told);
        }
      }
      for (const auto& [choice, all] : needs.items()) {
        for (const std::string need : all) {
          needs_[{path, choice}].push_back(KESTparse::split("|", need));
        }
      }
    }
  }
}

void Supplement::add(const std::string& path, const std::string& tag, const nlohmann::json& told) {
  if (told.contains("description")) {
    descriptions_[{path, tag}] = told["description"];
  }
  if (told.contains("choices")) {
    meanings_[{path, tag}].merge(told["choices"].get<std::map<std::string, std::string>>());
  }
}

std::string Supplement::description(const std::string& path) const {
  const auto it = blockDescriptions_.find(path);
  return it == blockDescriptions_.end() ? std::string() : it->second;
}

std::string Supplement::description(const std::string& path, std::string_view tag) const {
  const auto it = descriptions_.find({path, std::string(tag)});
  return it == descriptions_.end() ? std::string() : it->second;
}

std::string Supplement::meaning(const std::string& path, std::string_view tag,
                                const std::string& choice) const {
  const auto it = meanings_.find({path, std::string(tag)});
  if (it == meanings_.end()) {
    return {};
  }
  const auto meaning = it->second.find(choice);
  return meaning == it->second.end() ? std::string() : meaning->second;
}

std::vector<Need> Supplement::needs(const std::string& path, const std::string& choice) const {
  std::vector<Need> all;
  for (const std::string& asked : {std::string("*"), choice}) {
    const auto it = needs_.find({path, asked});
    if (it != needs_.end()) {
      all.insert(all.end(), it->second.begin(), it->second.end());
    }
  }
  return all;
}

}  // namespace kcf
