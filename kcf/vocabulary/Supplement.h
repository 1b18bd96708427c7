/// \file
/// What the vocabulary's own texts leave open: what choices mean, and what they need.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace kcf {

/// Asked by the path of a block; what it does not tell is empty.
class Supplement {
 public:
  /// Reads the file that the program carries.
  Supplement();

  /// Completes the description of a tag.
  [[nodiscard]] std::string description(const std::string& path, std::string_view tag) const;
  /// What a choice of a tag means.
  [[nodiscard]] std::string meaning(const std::string& path, std::string_view tag,
                                    const std::string& choice) const;
  /// The tags that a choice of the deciding tag needs by a rule of the block.
  [[nodiscard]] std::set<std::string> needs(const std::string& path,
                                            const std::string& choice) const;

 private:
  using TagKey = std::pair<std::string, std::string>;  // path and tag
  std::map<TagKey, std::string> descriptions_;
  std::map<TagKey, std::map<std::string, std::string>> meanings_;
  std::map<std::pair<std::string, std::string>, std::set<std::string>> needs_;
};

}  // namespace kcf
