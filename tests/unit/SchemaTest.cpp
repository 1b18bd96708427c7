#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "JsonEmission.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/InputTagEnum.h"
#include "KESTparse/framework/InputTagList.h"
#include "KESTparse/framework/InputTagNumber.h"
#include "KESTparse/framework/InputTagString.h"
#include "KESTparse/framework/InputTagVisitor.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/Names.h"
#include "KESTparse/vocabulary/Places.h"
#include "KESTparse/vocabulary/TagTraits.h"

namespace KESTparse {
namespace {

/// Notes the siblings that a tag depends on, and output lists without entries.
class Dependencies : public SelectiveTagVisitor {
 public:
  using SelectiveTagVisitor::visit;
  void visit(const InputTagSpecialOutputValueList& tag) override {
    isEmptyOutput = tag.getValidEntries().empty();
  }
  void visit(const InputTagCondUsedIf& tag) override {
    conditions.push_back(&tag.getCondition());
    InputTagVisitor::visit(tag);
  }
  void visit(const InputTagCondRequiredIf& tag) override {
    conditions.push_back(&tag.getCondition());
    InputTagVisitor::visit(tag);
  }
  void visit(const InputTagCondExclusive& tag) override {
    others.emplace_back(tag.getOtherTag());
    InputTagVisitor::visit(tag);
  }

  std::vector<const Condition*> conditions;
  std::vector<std::string> others;
  bool isEmptyOutput = false;
};

/// The faults of one tag of the schema, each behind the path of the tag.
void checkTag(const InputBlock& block, const InputTag& tag, const std::string& path,
              std::set<std::string>& faults) {
  const std::string place = path + " " + std::string(tag.getName());
  if (tag.getDescription().empty()) {
    faults.insert(place + ": no help");
  }
  if (tag.getTypeName() == "undef") {
    faults.insert(place + ": no kind");
  }
  Dependencies dependencies;
  tag.accept(dependencies);
  if (dependencies.isEmptyOutput) {
    faults.insert(place + ": no valid entries");
  }
  for (const std::string& other : dependencies.others) {
    if (block.getLogicalTagPosition(other) < 0) {
      faults.insert(place + ": excludes the unknown " + other);
    }
  }
  for (const Condition* condition : dependencies.conditions) {
    if (condition->sibling < 0) {
      faults.insert(place + ": depends on the unknown " + std::string(condition->tag));
      continue;
    }
    const InputTag& sibling = block.getLogicalTag(static_cast<std::size_t>(condition->sibling));
    std::set<std::string> allowed;
    for (std::size_t i = 0; i < sibling.getNumRestrictedValues(); ++i) {
      allowed.insert(sibling.getRestrictedValue(i));
    }
    for (const std::string& value : condition->values) {
      if (!allowed.contains(value)) {
        faults.insert(path + ": a condition names no value of " + std::string(condition->tag) +
                      ": " + value);
      }
    }
  }
}

void checkBlock(const InputBlock& block, const std::string& path, std::set<std::string>& faults) {
  std::ostringstream description;
  block.getDescription(description);
  if (description.str().empty()) {
    faults.insert(path + ": no help");
  }
  std::set<std::string> names;
  const auto instance = block.getLogicalParent() == nullptr ? nullptr : block.logicalClone(nullptr);
  for (const InputTag& tag : block.logicalTags()) {
    if (!names.insert(std::string(tag.getName())).second) {
      faults.insert(path + " " + std::string(tag.getName()) + ": name twice");
    }
    checkTag(block, tag, path, faults);
    if (!tag.getDefaultValue().empty()) {
      try {
        instance->getTag(tag.getName()).setRawValue(tag.getDefaultValue());
      } catch (const InputParseError& error) {
        faults.insert(path + " " + std::string(tag.getName()) + ": default: " + error.message);
      }
    }
  }
  for (const InputBlock& child : block.logicalBlocks()) {
    if (!names.insert(std::string(child.getName())).second) {
      faults.insert(path + "/" + std::string(child.getName()) + ": name twice");
    }
    checkBlock(child, path + "/" + std::string(child.getName()), faults);
  }
}

TEST(Schema, hasNoFaultsButTheKnownOnes) {
  const KestrixInputRoot root;
  std::set<std::string> faults;
  checkBlock(root, "", faults);
  // The vocabulary is older than this program, and files in use rely on it as it is.
  const std::string channel = "/DOMAIN/KESTCHAIN_1D/HYDRAULICS";
  const std::string slides = "/DOMAIN/KESTPLANE_2D/MORPHOLOGY/GRAVITATIONAL_TRANSPORT";
  const std::set<std::string> known{
      // Types that couplings once had.
      "/DOMAIN/COUPLINGS/COUPLING: a condition names no value of type: split",
      channel + "/INNER_BOUNDARY: a condition names no value of type: coupling_gate",
      channel + "/INNER_BOUNDARY: a condition names no value of type: coupling_weir",
      // Marks for "not given" that nobody may write; filling them in is an internal error.
      channel +
          "/SOURCE/EXTERNAL_SOURCE contraction_coeff: default: Value '-1.0' is not in range 0 "
          "&lt;= x &lt;= 1",
      channel +
          "/SOURCE/EXTERNAL_SOURCE opening_width: default: Value '-1.0' is not in range x &gt;= 0",
      // Tags that were never explained.
      "/DOMAIN/KESTPLANE_2D/TIMESTEP cycle_step: no help",
      slides + " check_hydrostatic_stabilization: no help",
      slides + " only_subsurface_angle: no help",
      slides + " stabilization_height: no help",
      "/DOMAIN/KESTSUB/BOUNDARY z_reduction: no help",
      "/DOMAIN/KESTSUB/SOURCE/EXTERNAL_SOURCE value: no help",
      "/DOMAIN/KESTSUB/SOURCE/EXTERNAL_SOURCE x_values: no help",
      "/DOMAIN/KESTSUB/SOURCE/EXTERNAL_SOURCE y_values: no help",
  };
  for (const std::string& fault : faults) {
    EXPECT_TRUE(known.contains(fault)) << fault;
  }
  for (const std::string& oddity : known) {
    EXPECT_TRUE(faults.contains(oddity)) << "no longer there: " << oddity;
  }
}

bool hasTag(const KestrixInputRoot& root, std::string_view path, std::string_view tag) {
  const Place place = findPlace(root, std::string(path));
  return place.block != nullptr && place.block->getLogicalTagPosition(tag) >= 0;
}

TEST(Schema, hasTheTagsOfTheTableOfNames) {
  const KestrixInputRoot root;
  for (const Naming& naming : allNamings()) {
    const std::string block(naming.block);
    std::istringstream tags{std::string(naming.tags)};
    for (std::string tag; tags >> tag;) {
      EXPECT_TRUE(hasTag(root, block, tag)) << block << " " << tag;
      const std::string region = regionTagOf(naming, tag);
      const bool isAbove = region.starts_with("../");
      const std::string holder = isAbove ? block.substr(0, block.rfind('/')) : block;
      EXPECT_TRUE(region.empty() || hasTag(root, holder, region.substr(isAbove ? 3 : 0)))
          << block << " " << tag << " " << region;
    }
    for (const DefiningTag& defined : naming.defined) {
      EXPECT_TRUE(hasTag(root, defined.block, defined.tag)) << defined.block;
      EXPECT_TRUE(naming.scope != NameScope::shared || !sharedBlock(block, defined).empty());
    }
  }
}

TEST(Schema, tellsOfEachFreeWordWhatItNames) {
  const KestrixInputRoot root;
  const std::set<std::string, std::less<>> namesNothing = {
      "title", "author", "date", "multiregion", "ip", "ip_address", "reference_time", "check"};
  for (const Place& place : placesOf(root)) {
    for (std::size_t i = 0; i < place.block->getLogicalNumTags(); ++i) {
      const InputTag& tag = place.block->getLogicalTag(i);
      const TagTraits traits = traitsOf(tag);
      const bool isWord = traits.kind == ValueKind::text || traits.kind == ValueKind::words ||
                          traits.kind == ValueKind::position ||
                          traits.kind == ValueKind::namedReals;
      if (!isWord || tag.isRestricted() || !traits.entries.empty() ||
          tag.getTypeName() == "boolean" || namesNothing.contains(tag.getName())) {
        continue;
      }
      EXPECT_TRUE(!namingsOf(place.path, tag.getName()).empty() ||
                  definingTag(place.path, tag.getName()) != nullptr ||
                  (place.path == "/DOMAIN/CONTROLLER" && tag.getName() == "name"))
          << place.path << " " << tag.getName();
    }
  }
}

TEST(Schema, isFrozenByTheFirstInstance) {
  KestrixInputRoot root;
  EXPECT_DEATH(
      {
        root.getBlock("PROJECT", nullptr, 1);
        root.getBlock(0).addLogicalTag(nullptr, nullptr);
      },
      "LOGICAL stuff might not be changed after the tree is beeing populated");
  EXPECT_DEATH(
      {
        root.getBlock("PROJECT", nullptr, 1);
        SubBlockRow row;
        row.master = std::make_unique<KestrixInputRoot>();
        root.getBlock(0).addLogicalBlock(std::move(row));
      },
      "LOGICAL stuff must be applied to the master");
}

/// Gives the siblings on which `tag` depends values for which it is used.
void meetConditions(InputBlock& block, const InputTag& tag) {
  Dependencies dependencies;
  tag.accept(dependencies);
  for (const Condition* condition : dependencies.conditions) {
    if (condition->sibling < 0 || condition->findSibling(block) != nullptr) {
      continue;
    }
    const InputTag& sibling = block.getLogicalTag(static_cast<std::size_t>(condition->sibling));
    std::string value = condition->values.front();
    for (std::size_t i = 0; !condition->equals && i < sibling.getNumRestrictedValues(); ++i) {
      value = sibling.getRestrictedValue(i);
      if (condition->isMet(value)) {
        break;
      }
    }
    meetConditions(block, sibling);
    block.getTag(sibling.getName()).setRawValue(value);
  }
}

/// What the document shows of an instance of `master` in which `tag` is used, with its default as a
/// value of the file or left out.
std::string documentWith(const InputBlock& master, const InputTag& tag, bool isGiven) {
  const auto block = master.logicalClone(nullptr);
  meetConditions(*block, tag);
  if (isGiven) {
    block->getTag(tag.getName()).setRawValue(tag.getDefaultValue());
  }
  block->populate();
  nlohmann::json walked = nlohmann::json::object();
  std::vector<std::string> path;
  walkTree(*block, path, walked, jsonCallbacks());
  return walked.contains(std::string(tag.getName())) ? walked.dump(1) : "not there";
}

/// A bottom opening needs all its numbers: the defaults of two of them are below their ranges.
bool neverPopulates(const InputTag& tag) {
  static const std::set<std::string_view> ofBottomOpening = {"opening_width", "contraction_coeff",
                                                             "correction_coeff"};
  return ofBottomOpening.count(tag.getName()) != 0;
}

void compareDefaults(const InputBlock& master, const std::string& path, int& compared) {
  for (const InputTag& tag : master.logicalTags()) {
    if (tag.getDefaultValue().empty() || neverPopulates(tag)) {
      continue;
    }
    ++compared;
    try {
      const std::string leftOut = documentWith(master, tag, false);
      EXPECT_EQ(leftOut, documentWith(master, tag, true)) << path << " " << tag.getName();
      EXPECT_NE(leftOut, "not there") << path << " " << tag.getName();
    } catch (const InputParseError& error) {
      ADD_FAILURE() << path << " " << tag.getName() << ": " << error.message;
    }
  }
  for (const InputBlock& child : master.logicalBlocks()) {
    compareDefaults(child, path + "/" + std::string(child.getName()), compared);
  }
}

TEST(Schema, aDefaultGivenIsADefaultLeftOut) {
  const KestrixInputRoot root;
  int compared = 0;
  compareDefaults(root, "", compared);
  EXPECT_GT(compared, 200);
}

}  // namespace
}  // namespace KESTparse
