#include "vocabulary/Supplement.h"

#include <nlohmann/json.hpp>

#include "Assets.h"

namespace kcf {

Supplement::Supplement() {
  const nlohmann::json file = nlohmann::json::parse(asset("vocabulary/supplement.json"));
  for (const auto& entry : file.at("blocks")) {
    const nlohmann::json tellings = entry.value("tags", nlohmann::json::object());
    const nlohmann::json needs = entry.value("needs", nlohmann::json::object());
    for (const std::string path : entry.at("paths")) {
      for (const auto& [tag, told] : tellings.items()) {
        if (told.contains("description")) {
          descriptions_[{path, tag}] = told["description"];
        }
        if (told.contains("choices")) {
          meanings_[{path, tag}] = told["choices"];
        }
      }
      for (const auto& [choice, tags] : needs.items()) {
        for (const std::string tag : tags) {
          needs_[{path, choice}].insert(tag);
        }
      }
    }
  }
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

std::set<std::string> Supplement::needs(const std::string& path, const std::string& choice) const {
  const auto it = needs_.find({path, choice});
  return it == needs_.end() ? std::set<std::string>() : it->second;
}

}  // namespace kcf
