#include "template/Template.h"

#include <fmt/format.h>

#include <iostream>
#include <map>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/Scanner.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

/// How often each path is named.
using Paths = std::map<std::string, int>;

std::string asIs(std::string_view text) {
  return std::string(text);
}

/// What the user must know to fill a tag in.
std::string remark(const InputTag& tag) {
  std::string text = tag.getTypeName();
  const auto add = [&text](const std::string& more) { text += more.empty() ? "" : "; " + more; };
  const TagTraits traits = traitsOf(tag);
  add(formOf(traits.kind));
  add(tag.getUnit());
  if (tag.isRestricted()) {
    add("one of " + quotedList(allowedValuesOf(tag)));
  }
  add(withSigns(traits.value->getConstraintDescription()));
  for (const TagRule& rule : traits.rules) {
    add(sentenceOf(rule, tag, asIs, asIs));
  }
  return text;
}

class Writer {
 public:
  Writer(const Paths& named, std::ostream& out) : named_(named), out_(out) {}

  /// Writes the sub-blocks of the block at `path` that are named, mandatory in a written one, or on
  /// the way to a named one.
  void writeChildren(const InputBlock& block, const std::string& path, bool isWritten,
                     std::size_t depth) {
    for (std::size_t i = 0; i < block.getLogicalNumBlocks(); ++i) {
      const InputBlock& child = block.getLogicalBlock(i);
      const std::string childPath = pathOf(path, child);
      const auto named = named_.find(childPath);
      const bool isChildWritten = named != named_.end() || (isWritten && child.isMandatory());
      if (isChildWritten || leadsToNamed(childPath)) {
        const int count = named != named_.end() && child.isRepeatable() ? named->second : 1;
        for (int number = 0; number < count; ++number) {
          writeBlock(child, childPath, isChildWritten, depth);
        }
      }
    }
  }

 private:
  void writeBlock(const InputBlock& block, const std::string& path, bool isWritten,
                  std::size_t depth) {
    const std::string indent(2 * depth, ' ');
    out_ << indent << block.getName() << " {\n";
    if (isWritten) {
      writeTags(block, indent + "  ");
    }
    writeChildren(block, path, isWritten, depth + 1);
    out_ << indent << "}\n";
  }

  [[nodiscard]] bool leadsToNamed(const std::string& path) const {
    const auto it = named_.lower_bound(path + "/");
    return it != named_.end() && it->first.starts_with(path + "/");
  }

  void writeTags(const InputBlock& block, const std::string& indent) {
    // A block without any tag needs those that are mandatory whatever the others say.
    const std::unique_ptr<InputBlock> empty =
        block.getLogicalNumTags() == 0 ? nullptr : block.logicalClone(nullptr);
    for (std::size_t i = 0; i < block.getLogicalNumTags(); ++i) {
      const InputTag& tag = block.getLogicalTag(i);
      if (!isWritableName(tag.getName())) {
        continue;
      }
      const std::string& value = tag.getDefaultValue();
      const bool isAsked = value.empty() || refusesItsDefault(tag, traitsOf(tag));
      out_ << indent << (tag.isMandatory(empty.get()) ? "" : "// ") << tag.getName() << " = "
           << (isAsked ? "?" : value) << "  // " << remark(tag) << "\n";
    }
  }

  const Paths& named_;
  std::ostream& out_;
};

}  // namespace

void writeTemplate(const InputBlock& root, const std::vector<Place>& places, std::ostream& out) {
  Paths named;
  for (const Place& place : places) {
    ++named[place.path];
  }
  out << "// Put a value in place of each ? and take away the // in front of what you want to set.\n";
  Writer(named, out).writeChildren(root, "/", named.contains("/"), 0);
}

}  // namespace KESTparse

namespace kcf {
namespace {

std::vector<std::string> blockPaths() {
  std::vector<std::string> paths;
  const KESTparse::KestrixInputRoot root;
  for (const KESTparse::Place& place : KESTparse::placesOf(root)) {
    paths.push_back(place.path);
  }
  return paths;
}

}  // namespace

Verb templateVerb() {
  return {
      "template",
      "Write command files",
      "Print the skeleton of a command file with the named blocks",
      R"(The named blocks stand in their frames, with the mandatory blocks within them.
A ? stands for a value that must be filled in. All other tags are commented
out with their defaults; each has its type, unit, range and condition beside
it. A block that may be repeated stands there as often as it is named.)",
      {{.name = "PATH",
        .help = "Path of a block, such as /DOMAIN/KESTPLANE_2D",
        .value = "PATH",
        .required = true,
        .repeatable = true,
        .suggestions = blockPaths}},
      [](const Arguments& arguments) {
        const KESTparse::KestrixInputRoot root;
        std::vector<KESTparse::Place> places;
        for (const std::string& path : arguments.values("PATH")) {
          places.push_back(KESTparse::findPlace(root, path));
          if (places.back().block == nullptr) {
            throw std::runtime_error(fmt::format("there is no block '{}'. Did you mean {}?", path,
                                                 fmt::join(nearestPaths(root, path), ", ")));
          }
        }
        KESTparse::writeTemplate(root, places, std::cout);
        return status::done;
      },
      {{"Begin a setup with one 2D region",
        "kcf template /PROJECT /DOMAIN/KESTPLANE_2D > setup.kcf"}}};
}

}  // namespace kcf
