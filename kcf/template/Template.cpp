#include "template/Template.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/Scanner.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "OutputFile.h"
#include "Setups.h"

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
    for (const InputBlock& child : block.logicalBlocks()) {
      const std::string childPath = pathOf(path, child);
      const auto named = named_.find(childPath);
      const bool isChildWritten = named != named_.end() || (isWritten && child.isMandatory());
      if (isChildWritten || leadsToNamed(childPath)) {
        const int count = named != named_.end() && child.isRepeatable() ? named->second : 1;
        for (int number = 0; number < count; ++number) {
          writeBlock(child, childPath, isChildWritten, depth);
        }
      } else if (isWritten) {
        writeLeftOut(child, std::string(2 * depth, ' '));
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
    for (const InputTag& tag : block.logicalTags()) {
      if (!isWritableName(tag.getName())) {
        continue;
      }
      const std::string& value = tag.getDefaultValue();
      const bool isAsked = value.empty() || refusesItsDefault(tag, traitsOf(tag));
      const std::string line =
          fmt::format("{}{}{} = {}", indent, tag.isMandatory(empty.get()) ? "" : "// ",
                      tag.getName(), isAsked ? "?" : value);
      const std::string told = remark(tag);
      if (line.size() + 5 + told.size() <= maxWidth) {
        out_ << line << "  // " << told << "\n";
      } else {
        writeComment(fmt::format("{}: {}", tag.getName(), told), indent);
        out_ << line << "\n";
      }
    }
  }

  /// A comment over as many lines as it needs; a tag that it tells of stands behind it.
  void writeComment(const std::string& text, const std::string& indent) {
    std::string line = indent + "//";
    std::istringstream words(text);
    for (std::string word; words >> word;) {
      if (line.size() + 1 + word.size() > maxWidth) {
        out_ << line << "\n";
        line = indent + "//";
      }
      line += " " + word;
    }
    out_ << line << "\n";
  }

  /// A line that tells of a sub-block that is left out.
  void writeLeftOut(const InputBlock& block, const std::string& indent) {
    std::ostringstream description;
    block.getDescription(description);
    std::string line = fmt::format("{}// {} {{ ... }}  {}: {}", indent, block.getName(),
                                   occurrence(block), withSigns(description.str()));
    if (line.size() > maxWidth) {
      line.resize(line.rfind(' ', maxWidth - 3));
      line += "...";
    }
    out_ << line << "\n";
  }

  static constexpr std::size_t maxWidth = 100;

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

using KESTparse::KestrixInputRoot;
using KESTparse::Place;

const Setup* findStart(const std::vector<Setup>& all, const std::string& name) {
  const auto it = std::find_if(all.begin(), all.end(), [&](const Setup& setup) {
    return setup.isStart && setup.name == name;
  });
  return it == all.end() ? nullptr : &*it;
}

/// The words that stand for a start or a block.
std::vector<std::string> knownNames() {
  std::vector<std::string> names;
  for (const Setup& setup : setups()) {
    if (setup.isStart) {
      names.push_back(setup.name);
    }
  }
  const KestrixInputRoot root;
  for (const Place& place : placesOf(root)) {
    names.push_back(place.path);
  }
  return names;
}

int list() {
  std::cout << "Whole setups, each with its files (kcf template NAME --output DIR):\n";
  for (const Setup& setup : setups()) {
    if (setup.isStart) {
      std::cout << fmt::format("  {:<12}{}\n", setup.name,
                               setup.help.substr(0, setup.help.find_first_of(":.")));
    }
  }
  std::cout << "\nSkeletons of blocks (kcf template PATH...):\n";
  const KestrixInputRoot root;
  for (const Place& place : placesOf(root)) {
    std::cout << "  " << place.path << "\n";
  }
  return status::done;
}

/// Writes the files of a start; none of those that are there is touched.
int writeStart(const Setup& start, const std::filesystem::path& folder) {
  std::error_code fault;
  std::filesystem::create_directories(folder, fault);
  if (fault) {
    throw std::runtime_error(
        fmt::format("making the folder '{}' failed: {}", folder.string(), fault.message()));
  }
  for (const Setup::File& file : start.files) {
    if (std::filesystem::exists(std::filesystem::symlink_status(folder / file.name))) {
      throw std::runtime_error(fmt::format("'{}' is there already", (folder / file.name).string()));
    }
  }
  for (const Setup::File& file : start.files) {
    writeFile((folder / file.name).string(), file.text, false);
  }
  return status::done;
}

/// The one place that `path` means.
Place placeOf(const KestrixInputRoot& root, const std::string& path) {
  const std::vector<Place> found = findPlaces(root, path);
  if (found.size() == 1) {
    return found.front();
  }
  if (found.empty()) {
    throw std::runtime_error(fmt::format("there is no block '{}'. Did you mean {}?", path,
                                         fmt::join(nearestPaths(root, path), ", ")));
  }
  std::vector<std::string> paths;
  paths.reserve(found.size());
  for (const Place& place : found) {
    paths.push_back("\n  " + place.path);
  }
  throw std::runtime_error(
      fmt::format("there are several blocks '{}':{}", path, fmt::join(paths, "")));
}

int writeSkeleton(const std::vector<std::string>& paths) {
  const KestrixInputRoot root;
  std::vector<Place> places;
  places.reserve(paths.size());
  for (const std::string& path : paths) {
    places.push_back(placeOf(root, path));
  }
  KESTparse::writeTemplate(root, places, std::cout);
  return status::done;
}

int runTemplate(const Arguments& arguments) {
  const std::vector<std::string> names = arguments.values("PATH");
  if (arguments.has("--list")) {
    return list();
  }
  if (names.empty()) {
    throw UsageError{"PATH is required; --list shows which there are"};
  }
  const std::vector<Setup> all = setups();
  const auto start = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
    return findStart(all, name) != nullptr;
  });
  if (start == names.end()) {
    if (arguments.has("--output")) {
      throw UsageError{"--output is for whole setups; a skeleton goes to standard output"};
    }
    return writeSkeleton(names);
  }
  if (names.size() > 1) {
    throw UsageError{fmt::format("'{}' is a whole setup, which stands alone", *start)};
  }
  if (!arguments.has("--output")) {
    throw UsageError{
        fmt::format("'{}' is a setup of several files: name a folder with --output", *start)};
  }
  return writeStart(*findStart(all, *start), arguments.value("--output"));
}

}  // namespace

Verb templateVerb() {
  return {"template",
          "Write command files",
          "Write a whole setup to begin with, or print the skeletons of blocks",
          R"(PATH is the name of a whole setup, which is written with all its files into
the folder of --output and converts as it is; --list shows which there are.

Or PATH is the path of a block, or as many of its last names as no other block
has. The named blocks stand in their frames, with the mandatory blocks within
them; optional ones are told in comments. A ? stands for a value that must be
filled in. All other tags are commented out with their defaults; each has its
type, unit, range and condition beside it or above it. A block that may be
repeated stands there as often as it is named.)",
          {{.name = "--list", .help = "List the whole setups, and the paths of all blocks"},
           {.name = "--output",
            .help = "Folder for the files of a whole setup; made if need be",
            .value = "DIR",
            .letter = 'o',
            .isPath = true},
           {.name = "PATH",
            .help = "A whole setup such as flood-2d, or a block such as KESTPLANE_2D/GEOMETRY",
            .value = "PATH",
            .repeatable = true,
            .suggestions = knownNames}},
          runTemplate,
          {{"Begin with a flood in 2D, and convert it",
            "kcf template flood-2d -o my-flood && cd my-flood && main-converter setup.kcf"},
           {"Begin a setup with one 2D region", "kcf template PROJECT KESTPLANE_2D > setup.kcf"},
           {"See what may stand in a block", "kcf template KESTPLANE_2D/HYDRAULICS/BOUNDARY"}}};
}

}  // namespace kcf
