#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputTagConditions.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {
namespace {

std::vector<std::string> textsOf(const std::vector<Message>& messages) {
  std::vector<std::string> texts;
  for (const Message& message : messages) {
    texts.push_back(message.text);
  }
  return texts;
}

/// A block with what no block of the vocabulary has.
class Leaf : public SchemaBlock<Leaf> {
 public:
  using SchemaBlock::SchemaBlock;
  void getDescription(std::ostream& out) const override { out << "A leaf."; }

  std::string name;
  double depth = 0;
  int count = 0;
  double slope = 0;
  bool flag = false;
  std::string mode;
  double precision = 0;
  double other = 0;
  double either = 0;
  double orElse = 0;
  std::vector<std::string> words_list;
  std::map<std::string, std::vector<double>> coefficients;
  std::string file;
  Kestrix::Table file_table;
  std::string place;
  std::string region;

 protected:
  void createTags() override {
    word<&Self::name>("Name.").preset("unnamed");
    real<&Self::depth>("Depth.").preset("-1").unit("[m]").above(0).atMost(10).reasonable(
        Range<double>(true, true, true, true, 1.0, 5.0));
    integer<&Self::count>("Count.");
    slopePerMill<&Self::slope>("Slope.").preset("-100.0").atLeast(0);
    boolean<&Self::flag>("Flag.").preset("true");
    text<&Self::mode>("Mode.").oneOf({"iteration", "table", "none"});
    real<&Self::precision>("Precision.").mandatory().requiredIf("mode", {"iteration"});
    real<&Self::other>("Other.").defaultsTo("3").usedIfNot("mode", {"table", "none"});
    real<&Self::either>("Either.").exclusiveWith("orElse");
    real<&Self::orElse>("Or else.").usedIf("mode", {"table", "none"}).exclusiveWith("either");
    words<&Self::words_list>("Words.").items(-2).constraint("[words]").validEntries({"a", "b"});
    taggedReals<&Self::coefficients>("Coefficients.").repeatable();
    seriesFile<&Self::file, &Self::file_table>("Series.").preset("no file");
    positionOf<&Self::place, &Self::region>("position", "Position.");
  }
};

class Branch : public SchemaBlock<Branch> {
 public:
  using SchemaBlock::SchemaBlock;
  void getDescription(std::ostream& out) const override { out << "A branch."; }

  Leaf* leaf_ptr = nullptr;
  std::vector<Leaf*> leaf_ptrV;

 protected:
  void createSubBlocks() override {
    subBlock<&Self::leaf_ptr>("LEAF").mandatory();
    subBlock<&Self::leaf_ptrV>("LEAVES").repeatable();
  }
  void createTags() override {}
};

class TreeTest : public testing::Test {
 protected:
  TreeTest() : master_(std::make_unique<Branch>("BRANCH", nullptr, false, false)) {
    master_->declare();
    holder_ = master_->logicalClone(nullptr);
    GlobalValues::instance().basePath = "./";
  }

  Branch& branch() { return static_cast<Branch&>(*holder_); }
  Leaf& addLeaf(std::string_view name = "LEAF") {
    return static_cast<Leaf&>(branch().getBlock(name, nullptr, 7));
  }
  /// Sets a tag; returns what is wrong with the value.
  static std::string set(Leaf& leaf, std::string_view name, std::string_view value) {
    try {
      leaf.getTag(name).setRawValue(value);
    } catch (const InputParseError& error) {
      return error.message;
    }
    return {};
  }

  std::unique_ptr<InputBlock> master_;
  std::unique_ptr<InputBlock> holder_;
};

TEST_F(TreeTest, instancesBeginWithThePresets) {
  const Leaf& leaf = addLeaf();
  EXPECT_EQ(leaf.name, "unnamed");
  EXPECT_EQ(leaf.depth, -1.0);
  EXPECT_EQ(leaf.slope, -100.0);
  EXPECT_TRUE(leaf.flag);
  EXPECT_EQ(leaf.file, "no file");
  EXPECT_EQ(branch().leaf_ptr, &leaf);
  EXPECT_EQ(leaf.getLine(), 7U);
  EXPECT_EQ(leaf.getFileName(), "");
}

TEST_F(TreeTest, valuesReachTheVariables) {
  Leaf& leaf = addLeaf();
  EXPECT_EQ(set(leaf, "depth", " 2.5\t"), "");
  EXPECT_EQ(leaf.depth, 2.5);
  EXPECT_EQ(leaf.getTag("depth", 0).asDouble(), 2.5);
  EXPECT_EQ(leaf.getTag("depth", 0).getRawValue(), "2.5");
  EXPECT_EQ(set(leaf, "slope", "1.25"), "");
  EXPECT_EQ(leaf.slope, 0.00125);
  EXPECT_EQ(set(leaf, "position", "r.p"), "");
  EXPECT_EQ(leaf.region + " " + leaf.place, "r p");
  EXPECT_EQ(set(leaf, "flag", "no"), "");
  EXPECT_FALSE(leaf.flag);
}

TEST_F(TreeTest, refusedValuesLeaveTheVariableAlone) {
  struct Row {
    const char* tag;
    const char* value;
    const char* fault;
  };
  for (
      const Row& row : std::vector<Row>{
          {"depth", "0", "Value '0' is not in range 0 &lt; x &lt;= 10"},
          {"depth", "11", "Value '11' is not in range 0 &lt; x &lt;= 10"},
          {"flag", "1",
           "Expression '1' is not a valid value for tag 'flag'. Allowed values are 'no', 'yes'"},
          {"mode", "",
           "Empty value is not allowed for tag 'mode'. Allowed values are 'iteration', 'table', 'none'"},
          {"name", "a b",
           "The string does not meet the restriction: Chars [a-zA-Z0-9_-] are allowed"},
          {"position", "", "Position starts with a '.' which means that no region name is defined"},
          {"position", ".a",
           "Position starts with a '.' which means that no region name is defined"},
          {"position", "ab", "There is no region name in string 'ab'"},
          {"position", "a.b.c", "Found a second dot in 'a.b.c' which is unexpected"},
          {"words_list", "", "The string which should contain a list is empty"},
          {"words_list", "a b", "List starts with 'a' instead of the expected opening brace '('"},
          {"words_list", "(a b",
           "List does end with 'b' instead of the expected closing brace ')'"},
          {"words_list", "(", "List does end with '(' instead of the expected closing brace ')'"},
          {"words_list", "(a b a)", "Invalid list: Expected up to 2 items in list but found 3"},
          {"words_list", "(a c)",
           "List item nr. 2 'c' is not a valid list entry. Valid entries are 'a', 'b'"},
          {"file", "", "Empty filename received"},
          {"file", "none", "Can not open file './/none'"},
          {"coefficients", "", "The string which should contain a list is empty"},
          {"coefficients", "a", "The string does not contain a tagged list"},
          {"coefficients", ":( 1 )", "The tag of tagged list is missing"},
          {"coefficients", "( 1 )", "The tag of tagged list is missing"},
          {"coefficients", "a:", "The string does not contain a tagged list"},
          {"coefficients", "a: ( 1 )",
           "The tagged list expects an opening brace after the double point"},
          {"coefficients", "a:(1",
           "List does end with '1' instead of the expected closing brace ')'"},
          {"coefficients", "a:(x)",
           "Tag 'coefficients' has an invalid list: List item nr. 1 is invalid: Value 'x' can not be recognized as a double"}}) {
    const std::unique_ptr<InputBlock> fresh = master_->logicalClone(nullptr);
    Leaf& leaf = static_cast<Leaf&>(fresh->getBlock("LEAF", nullptr, 1));
    EXPECT_EQ(set(leaf, row.tag, row.value), row.fault) << row.tag << " = " << row.value;
    EXPECT_EQ(leaf.depth, -1.0);
    EXPECT_TRUE(leaf.words_list.empty() && leaf.coefficients.empty());
  }
}

TEST_F(TreeTest, unreasonableValuesAreWarnedOfEachTime) {
  Leaf& leaf = addLeaf();
  EXPECT_EQ(set(leaf, "depth", "6"), "");
  EXPECT_EQ(leaf.depth, 6.0);
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_TRUE(leaf.getTag(0).validate());
    EXPECT_EQ(
        leaf.getTag(0).getWarnings(),
        std::vector<std::string>{"Value '6' is not in the reasonable range 0 &lt; x &lt;= 10"});
  }
}

TEST_F(TreeTest, conditionsLookAtTheSibling) {
  Leaf& leaf = addLeaf();
  // The sibling stands later in the file: only the second check sees it.
  EXPECT_EQ(set(leaf, "precision", "0.1"), "");
  EXPECT_EQ(set(leaf, "orElse", "1"), "");
  EXPECT_EQ(leaf.validate(), 0U);
  EXPECT_EQ(leaf.getNumWarnings(), 0U);
  EXPECT_EQ(set(leaf, "mode", "table"), "");
  EXPECT_EQ(leaf.validate(), 0U);
  EXPECT_EQ(leaf.getTag(0).getWarnings(),
            std::vector<std::string>{
                "The value for tag 'precision' will not be used as tag 'mode' != 'iteration'"});
  EXPECT_EQ(set(leaf, "either", "2"), "Tag 'either' and tag 'orElse' are exclusive.");
  EXPECT_EQ(leaf.validate(), 2U);
  leaf.removeTag(leaf.getTag("mode", 0));
  EXPECT_EQ(set(leaf, "mode", "iteration"), "");
  leaf.validate();
  EXPECT_EQ(leaf.getTag("orElse", 0).getWarnings(),
            std::vector<std::string>{
                "The value for tag 'orElse' will not be used as tag 'mode' != 'table' or 'none' "});
}

TEST_F(TreeTest, requiredTagsAreMissedOnlyUnderTheirCondition) {
  Leaf& leaf = addLeaf();
  EXPECT_EQ(leaf.validate(), 0U);
  set(leaf, "mode", "none");
  EXPECT_EQ(leaf.validate(), 0U);
  leaf.removeTag(leaf.getTag("mode", 0));
  set(leaf, "mode", "iteration");
  EXPECT_EQ(leaf.validate(), 1U);
  EXPECT_EQ(textsOf(leaf.getErrors()),
            std::vector<std::string>{"Tag 'precision' is mandatory but missing."});
  const int position = leaf.getLogicalTagPosition("precision");
  EXPECT_TRUE(leaf.getLogicalTag(static_cast<std::size_t>(position)).isMandatory());
}

TEST_F(TreeTest, populationFollowsTheConditions) {
  Leaf& leaf = addLeaf();
  branch().populate();
  EXPECT_FALSE(leaf.hasTag("other")) << "the sibling is absent";
  // Differing from one of two values is enough, so any value at all will do.
  set(leaf, "mode", "table");
  branch().populate();
  EXPECT_TRUE(leaf.hasTag("other"));
  EXPECT_EQ(leaf.other, 3.0);
}

TEST_F(TreeTest, constraintsAreTold) {
  const auto told = [this](std::string_view name) {
    const InputBlock& leaf = master_->getLogicalBlock(0);
    return leaf.getLogicalTag(static_cast<std::size_t>(leaf.getLogicalTagPosition(name)))
        .getConstraintDescription();
  };
  EXPECT_EQ(told("depth"), "0 &lt; x &lt;= 10");
  EXPECT_EQ(told("precision"), "required if 'mode' = 'iteration'");
  EXPECT_EQ(told("other"), "used if 'mode' != 'table'  or 'none' ");
  EXPECT_EQ(told("orElse"), "used if 'mode' = 'table'  or 'none' ; exclusive: 'either'");
  EXPECT_EQ(told("words_list"), "[words]; valid entries are {'a', 'b'}");
}

TEST_F(TreeTest, namedListsShareTheirMap) {
  Leaf& leaf = addLeaf();
  EXPECT_EQ(set(leaf, "coefficients", "b:( 1 2 )"), "");
  EXPECT_EQ(set(leaf, "coefficients", "a:(3)"), "");
  EXPECT_EQ(set(leaf, "coefficients", "a:(4)"), "The tag 'a' is already defined");
  EXPECT_EQ(leaf.coefficients.size(), 2U);
  leaf.getTag(0).setRawValue("c:(5)");
  EXPECT_FALSE(leaf.coefficients.contains("b"));
  EXPECT_EQ(leaf.coefficients["c"], std::vector<double>{5});
  leaf.removeTag(leaf.getTag(0));
  EXPECT_FALSE(leaf.coefficients.contains("c"));
  EXPECT_EQ(leaf.getNumTagsNamed("coefficients"), 2U);
}

TEST_F(TreeTest, removedTagsGiveThePresetBack) {
  Leaf& leaf = addLeaf();
  set(leaf, "name", "x");
  set(leaf, "depth", "2");
  set(leaf, "mode", "table");
  leaf.removeTag(leaf.getTag(0));
  EXPECT_EQ(leaf.name, "unnamed");
  EXPECT_EQ(leaf.getTag(1).getIndex(), 1U);
  EXPECT_FALSE(leaf.hasTag("name"));
  EXPECT_EQ(set(leaf, "name", "y"), "");
}

TEST_F(TreeTest, blocksAreFiledAndRemoved) {
  addLeaf("LEAVES");
  Leaf& second = addLeaf("LEAVES");
  Leaf& single = addLeaf();
  EXPECT_THROW(addLeaf(), InputParseError);
  EXPECT_EQ(branch().getNumBlocksNamed("LEAVES"), 2U);
  EXPECT_EQ(&branch().getBlock("LEAVES", 1), &second);
  EXPECT_EQ(second.ancestor<Branch>(), &branch());
  branch().removeBlock(branch().getBlock(0));
  EXPECT_EQ(branch().leaf_ptrV, std::vector<Leaf*>{&second});
  branch().removeBlock(single);
  EXPECT_EQ(branch().leaf_ptr, nullptr);
  EXPECT_EQ(branch().validate(), 1U);
  EXPECT_EQ(textsOf(branch().getErrors()),
            std::vector<std::string>{"Block 'LEAF' is mandatory but missing."});
  addLeaf();
  EXPECT_EQ(branch().validate(), 0U);
}

TEST_F(TreeTest, pathsFollowTheFirstBlockOfAName) {
  Leaf& leaf = addLeaf("LEAVES");
  addLeaf("LEAVES");
  EXPECT_EQ(branch().getBlockByPath(""), &branch());
  EXPECT_EQ(branch().getBlockByPath("LEAVES"), &leaf);
  EXPECT_EQ(leaf.getBlockByPath(".."), &branch());
  EXPECT_EQ(leaf.getBlockByPath("../LEAVES/../LEAVES"), &leaf);
  EXPECT_EQ(leaf.getBlockByPath("../LEAF"), nullptr);
  EXPECT_EQ(leaf.getBlockByPath("../.."), nullptr);
  EXPECT_DEATH(
      (void)leaf.getBlockByPath("../NOPE/x"),
      "Block named 'NOPE' within path ../NOPE/x does not exist\\s+within\\s+block\\s+'BRANCH'");
}

TEST_F(TreeTest, misuseIsAnAssertion) {
  Leaf& leaf = addLeaf();
  set(leaf, "depth", "2");
  EXPECT_DEATH((void)leaf.getTag(0).asInt(), "You must not call this function on a double object.");
  EXPECT_DEATH((void)leaf.getTag("count").asDouble(),
               "You must not call this function on an integer object.");
  EXPECT_DEATH((void)leaf.getTag("name").asDouble(), "This Tag is not a double value tag!");
  EXPECT_DEATH((void)leaf.getTag(0).logicalClone(leaf), "this->logicalMaster_ == nullptr");
  EXPECT_DEATH((void)leaf.logicalClone(nullptr), "logicalMaster_ == nullptr");
  EXPECT_DEATH((void)leaf.getTag(9), "index < this->available_tags_.size\\(\\)");
  EXPECT_DEATH((void)leaf.getTag("depth", 1),
               "InputBlock: Tag 'depth' with index '1' does not exists as only 1 tags of");
  EXPECT_DEATH((void)leaf.getNumTagsNamed("nope"),
               "Tag named nope does not exists in the logical tag list");
  EXPECT_DEATH(branch().addBlock(leaf.getLogicalMaster()->logicalClone(nullptr)),
               "leaf_ptr == nullptr");
  EXPECT_DEATH(branch().addBlock(master_->logicalClone(nullptr)), "unknown block, in file");
  InputTag& foreign = addLeaf("LEAVES").getTag("name");
  EXPECT_DEATH(leaf.removeTag(foreign), "tag->getActualParent\\(\\) == this");
}

/// Counts the tags of each kind that it is shown.
class Kinds : public InputTagVisitor {
 public:
  using InputTagVisitor::visit;
  void visit(const InputTagNumber<int>& /*tag*/) override { kinds += "i"; }
  void visit(const InputTagNumber<double>& /*tag*/) override { kinds += "r"; }
  void visit(const InputTagSlope& /*tag*/) override { kinds += "s"; }
  void visit(const InputTagBoolean& /*tag*/) override { kinds += "b"; }
  void visit(const InputTagString& /*tag*/) override { kinds += "t"; }
  void visit(const InputTagStringStd& /*tag*/) override { kinds += "k"; }
  void visit(const InputTagFile& /*tag*/) override { kinds += "f"; }
  void visit(const InputTagSeriesFile& /*tag*/) override { kinds += "S"; }
  void visit(const InputTagPosition& /*tag*/) override { kinds += "p"; }
  void visit(const InputTagEnumBase& /*tag*/) override { kinds += "e"; }
  void visit(const InputTagList<int>& /*tag*/) override { kinds += "I"; }
  void visit(const InputTagList<double>& /*tag*/) override { kinds += "R"; }
  void visit(const InputTagList<std::string>& /*tag*/) override { kinds += "T"; }
  void visit(const InputTagSpecialOutputValueList& /*tag*/) override { kinds += "o"; }
  void visit(const InputTagTaggedList<double>& /*tag*/) override { kinds += "g"; }

  std::string kinds;
};

TEST_F(TreeTest, visitorsSeeThroughConditions) {
  Kinds kinds;
  const InputBlock& leaf = master_->getLogicalBlock(0);
  for (const InputTag& tag : leaf.logicalTags()) {
    tag.accept(kinds);
  }
  EXPECT_EQ(kinds.kinds, "trisbtrrrrTgSp");
}

}  // namespace
}  // namespace KESTparse
