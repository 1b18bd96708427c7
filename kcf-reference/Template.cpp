#include "Template.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

#include "KESTparse/framework/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"

namespace KESTparse {
namespace {

using Paths = std::set<std::string>;

std::string pathOf(const std::string& parent, const InputBlock& child) {
  return parent + "/" + std::string(child.getName());
}

void collectPaths(const InputBlock& block, const std::string& path,
                  std::vector<std::string>& paths) {
  paths.push_back(path.empty() ? "/" : path);
  for (std::size_t i = 0; i < block.getLogicalNumBlocks(); ++i) {
    const InputBlock& child = block.getLogicalBlock(i);
    collectPaths(child, pathOf(path, child), paths);
  }
}

/// How many characters must be put in, taken out or replaced to make `b` of `a`.
std::size_t editDistance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0U);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, replaced}));
    }
  }
  return row.back();
}

/// `text` with the signs of ranges as a person writes them.
std::string withSigns(std::string text) {
  for (const auto& [entity, sign] : {std::pair{"&lt;", "<"}, std::pair{"&gt;", ">"}}) {
    for (std::size_t at = text.find(entity); at != std::string::npos; at = text.find(entity)) {
      text.replace(at, std::string_view(entity).size(), sign);
    }
  }
  return text;
}

/// What the user must know to fill a tag in.
std::string remark(const InputTag& tag) {
  std::string text = tag.getTypeName();
  const auto add = [&text](const std::string& more) { text += more.empty() ? "" : "; " + more; };
  add(tag.getUnit());
  std::vector<std::string> words;
  for (std::size_t i = 0; i < tag.getNumRestrictedValues(); ++i) {
    words.push_back(tag.getRestrictedValue(i));
  }
  add(words.empty() ? "" : "one of " + quotedList(words));
  add(withSigns(tag.getConstraintDescription()));
  return text;
}

class Writer {
 public:
  Writer(const Paths& named, std::ostream& out) : named_(named), out_(out) {}

  /// Writes a block if it is named, mandatory in a written one, or on the way to a named one.
  void writeBlock(const InputBlock& block, const std::string& path, bool isWanted, int depth) {
    const bool isWritten = isWanted || named_.contains(path);
    if (!isWritten && !leadsToNamed(path)) {
      return;
    }
    const std::string indent(static_cast<std::size_t>(2 * depth), ' ');
    out_ << indent << block.getName() << " {\n";
    if (isWritten) {
      writeTags(block, indent + "  ");
    }
    writeChildren(block, path, isWritten, depth + 1);
    out_ << indent << "}\n";
  }

  void writeChildren(const InputBlock& block, const std::string& path, bool isWritten, int depth) {
    for (std::size_t i = 0; i < block.getLogicalNumBlocks(); ++i) {
      const InputBlock& child = block.getLogicalBlock(i);
      writeBlock(child, pathOf(path, child), isWritten && child.isMandatory(), depth);
    }
  }

 private:
  [[nodiscard]] bool leadsToNamed(const std::string& path) const {
    const auto it = named_.lower_bound(path + "/");
    return it != named_.end() && it->starts_with(path + "/");
  }

  void writeTags(const InputBlock& block, const std::string& indent) {
    // A block without any tag needs those that are mandatory whatever the others say.
    const std::unique_ptr<InputBlock> empty = block.logicalClone(nullptr);
    for (std::size_t i = 0; i < block.getLogicalNumTags(); ++i) {
      const InputTag& tag = block.getLogicalTag(i);
      const std::string& value = tag.getDefaultValue();
      out_ << indent << (tag.isMandatory(empty.get()) ? "" : "// ") << tag.getName() << " = "
           << (value.empty() ? "?" : value) << "  // " << remark(tag) << "\n";
    }
  }

  const Paths& named_;
  std::ostream& out_;
};

}  // namespace

const InputBlock* findMaster(const InputBlock& root, const std::string& path) {
  if (!path.starts_with('/')) {
    return nullptr;
  }
  const InputBlock* block = &root;
  for (const std::string& name : split("/", path)) {
    const int position = block->getLogicalBlockPosition(name);
    if (position < 0) {
      return nullptr;
    }
    block = &block->getLogicalBlock(static_cast<std::size_t>(position));
  }
  return block;
}

std::vector<std::string> nearestPaths(const InputBlock& root, const std::string& path) {
  std::vector<std::string> paths;
  collectPaths(root, "", paths);
  // A mere name is as good a hint as a path.
  const bool isName = path.find('/') == std::string::npos;
  const auto distance = [&path, isName](const std::string& known) {
    return editDistance(toUpper(path),
                        toUpper(isName ? known.substr(known.rfind('/') + 1) : known));
  };
  std::vector<std::pair<std::size_t, std::string>> ranked;
  for (const std::string& known : paths) {
    ranked.emplace_back(distance(known), known);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  constexpr std::size_t numHints = 3;
  std::vector<std::string> nearest;
  for (std::size_t i = 0; i < std::min(numHints, ranked.size()); ++i) {
    nearest.push_back(ranked[i].second);
  }
  return nearest;
}

void writeTemplate(const InputBlock& root, const std::vector<std::string>& paths,
                   std::ostream& out) {
  Paths named;
  for (const std::string& path : paths) {
    std::string known;
    for (const std::string& name : split("/", path)) {
      known += "/" + name;
    }
    named.insert(known);
  }
  Writer(named, out).writeChildren(root, "", named.contains(""), 0);
}

}  // namespace KESTparse
