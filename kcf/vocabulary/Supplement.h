/// \file
/// What the vocabulary's own texts leave open: what choices mean, and what they need.
#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kcf {

/// The tags one of which must be given; most often a single one.
using Need = std::vector<std::string>;

/// Asked by the path of a block; what it does not tell is empty.
class Supplement {
 public:
  /// Reads the file that the program carries.
  Supplement();

  /// Completes the description of a block.
  [[nodiscard]] std::string description(const std::string& path) const;
  /// Completes the description of a tag.
  [[nodiscard]] std::string description(const std::string& path, std::string_view tag) const;
  /// What a choice of a tag, or an item of its list, means.
  [[nodiscard]] std::string meaning(const std::string& path, std::string_view tag,
                                    const std::string& choice) const;
  /// What a choice of the deciding tag needs beyond the conditions of the tags themselves.
  [[nodiscard]] std::vector<Need> needs(const std::string& path, const std::string& choice) const;

 private:
  /// Takes in what is told of a tag.
  void add(const std::string& path, const std::string& tag, const nlohmann::json& told);

  using TagKey = std::pair<std::string, std::string>;  // path and tag
  std::map<std::string, std::string> blockDescriptions_;
  std::map<TagKey, std::string> descriptions_;
  std::map<TagKey, std::map<std::string, std::string>> meanings_;
  std::map<std::pair<std::string, std::string>, std::vector<Need>> needs_;  // path and choice
};

}  // namespace kcf
