#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/InputParseError.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace KESTparse {
namespace {

/// What the parser makes of a text: the tree as text, or the error.
std::string parsed(const std::string& text, const std::string& fileName = "f.kcf") {
  KestrixInputRoot root;
  InputParser parser(root);
  std::istringstream in(text);
  try {
    parser.parse(in, true, fileName);
  } catch (const InputParseError& error) {
    return std::to_string(error.code) + "@" + std::to_string(error.line) + ": " + error.message;
  }
  std::string tree;
  std::vector<const InputBlock*> blocks{&root};
  while (!blocks.empty()) {
    const InputBlock& block = *blocks.back();
    blocks.pop_back();
    tree += std::string(block.getName()) + "(" + std::to_string(block.getLine());
    for (const InputTag& tag : block.tags()) {
      tree += " " + std::string(tag.getName()) + "=" + tag.getRawValue();
    }
    tree += ")";
    for (std::size_t i = block.getNumBlocks(); i > 0; --i) {
      blocks.push_back(&block.getBlock(i - 1));
    }
  }
  return tree + parser.getMessage();
}

TEST(Parser, readsBlocksAndTags) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"", "KESTRIX(0)"},
      {"PROJECT {\n title = a\n}\n", "KESTRIX(0)PROJECT(2 title=a)"},
      {"PROJECT\n\n{\n}\n", "KESTRIX(0)PROJECT(4)"},
      {"PROJECT { title = a\n}\n", "KESTRIX(0)PROJECT(1 title=a)"},
      {"PROJECT {\n date \t=\n}\n", "KESTRIX(0)PROJECT(2 date=)"},
      {"PROJECT {\n date = {\"x\"} = (a\nb) \n}", "KESTRIX(0)PROJECT(2 date={\"x\"} = (a\nb))"},
      {"PROJECT {}\n", "KESTRIX(0)PROJECT(1)"},
      {"PROJECT {}\n date = 1\n}\n", "KESTRIX(0)PROJECT(1 date=1)"},
      {"PROJECT {\r\n title = a\r\n}\r\n", "KESTRIX(0)PROJECT(1 title=a)"},
      {"DOMAIN {\n PARALLEL {\n}} PROJECT {\n}\n", "KESTRIX(0)DOMAIN(2)PARALLEL(3)PROJECT(4)"},
      {"DOMAIN {\n PARALLEL {\n}}", "KESTRIX(0)DOMAIN(2)PARALLEL(3)"},
      // A block that is still open at the end of the file is closed by it.
      {"DOMAIN {\n PARALLEL {\n}\n", "KESTRIX(0)DOMAIN(2)PARALLEL(3)"},
      {"DOMAIN {\n PARALLEL {\n", "KESTRIX(0)DOMAIN(2)PARALLEL(3)"},
      // Comments.
      {"// x {\nPROJECT /* { */ {\n date = a//b\n}\n", "KESTRIX(0)PROJECT(3 date=a)"},
      {"PROJECT {\n date = a/b/*/c\n}\n", "KESTRIX(0)PROJECT(2 date=a/b   c)"},
      {"PROJECT {\n date = 1 /* x *//y\n}\n", "KESTRIX(0)PROJECT(2 date=1)"},
      {"PROJECT {\n date = 1 /* x */*y\n}\n", "KESTRIX(0)PROJECT(2 date=1)"},
      {"PROJECT {\n}\n/* open { = )", "KESTRIX(0)PROJECT(2)"},
      {"PROJECT {\n date = /\n}\n/", "9@4: Found an invalid character '/' while expecting a name"},
  };
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(parsed(text), expected) << text;
  }
}

TEST(Parser, stopsAtTheFirstFault) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"{", "6@1: Found opening brace { with empty block name"},
      {"= 1\n", "7@1: Found tag definition with empty tag name"},
      // The byte behind a brace is swallowed.
      {"PROJECT {date = 1\n}",
       "2@1: Tag named 'ate' is not defined within block 'PROJECT'. Valid tag names are 'title', "
       "'author', 'date', 'real_time_factor'"},
      {"PROJECT {t= 1\n}", "7@1: Found tag definition with empty tag name"},
      {"PROJECT {\n date = a/*\n*/ c\n}\n",
       "5@4: Found a closing brace '}' after a series of name characters 'c'"},
      {"a }", "5@1: Found a closing brace '}' after a series of name characters 'a'"},
      {"\n} ", "5@2: Closing of the root block found"},
      {"two words = 1", "8@1: Found an invalid whitespace character in a name"},
      {"a\xc3\xa4", "9@1: Found an invalid character '\xc3' while expecting a name"},
      {"PROJECT {\n date = x)\n",
       "10@2: Found closing brace in tag value but there was no opening brace"},
      {"NOPE {\n}\n",
       "1@2: Block named 'NOPE' is not a valid block name within block 'KESTRIX'. Valid blocks are "
       "'PROJECT', 'DOMAIN'"},
      {"PROJECT {\n A {\n",
       "1@3: Block named 'A' is not a valid block name within block 'PROJECT'. There is no subblock"},
      {"PROJECT {\n name = 1\n",
       "2@2: Tag named 'name' is not defined within block 'PROJECT'. Valid tag names are 'title', "
       "'author', 'date', 'real_time_factor'"},
      {"name = 1\n",
       "2@1: Tag named 'name' is not defined within block 'KESTRIX'. Actually, there are no tags in "
       "this block"},
      {"PROJECT {\n} PROJECT {\n",
       "3@3: Block named 'PROJECT' is non-repeatable, but second block defined"},
      {"PROJECT {\n date = 1\n date = 2\n",
       "4@3: Tag named 'date' is non-repeatable, but second tag defined."},
  };
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(parsed(text), expected) << text;
  }
}

TEST(Parser, tellsHowTheFileEnds) {
  const std::string invalid =
      "0@-1: End of file reached in an invalid state, which means that your input file is invalid. ";
  const std::string usually =
      "Usually, this happens if some lists or blocks miss their closing brace '}' or ')'.";
  EXPECT_EQ(
      parsed("\nPROJECT {"),
      invalid +
          "The problem occured while parsing block 'PROJECT' in file 'f.kcf' which started on line 2. " +
          usually);
  EXPECT_EQ(parsed("PROJECT {\n date\n = (1\n\n", ""),
            invalid + "The problem occurred while parsing tag 'date' which started on line 3. " +
                usually);
  EXPECT_EQ(parsed("DOMAIN {\n PARALLEL {\n}"), invalid + usually);
  EXPECT_EQ(parsed("}"), invalid + usually);
  EXPECT_EQ(parsed("PROJECT {\n}\nabc"),
            "0@-1: There are some trailing characters at the end of the file! Fix it");
  EXPECT_EQ(parsed("PROJECT {\n}"), "KESTRIX(0)PROJECT(2)");
}

TEST(Parser, collectsRefusedValuesWhenItThrows) {
  EXPECT_EQ(parsed("PROJECT {\n title = a b\n real_time_factor = x\n date = 1\n}\n"),
            "KESTRIX(0)PROJECT(2 title=a b real_time_factor=x date=1)"
            "Tag value error near line 2, col 12: The string does not meet the restriction: Chars "
            "[a-zA-Z0-9_-] are allowed\n"
            "Tag value error near line 3, col 21: Value 'x' can not be recognized as a double\n");
}

// What was read of a long text goes back to the system while the rest is read.
TEST(Parser, keepsValuesAndPlacesOfALongText) {
  std::string filler;
  for (int i = 0; i < 20000; ++i) {
    filler += "// " + std::string(97, 'x') + "\n";
  }
  EXPECT_EQ(
      parsed("PROJECT {\n title = a\n" + filler + " date = b\n" + filler +
             " real_time_factor = x\n}\n" + filler + "DOMAIN { multiregion = m\n}\n"),
      "KESTRIX(0)PROJECT(2 title=a date=b real_time_factor=x)DOMAIN(60006 multiregion=m)"
      "Tag value error near line 40004, col 21: Value 'x' can not be recognized as a double\n");
}

TEST(Parser, reportsAnUnreadableStream) {
  KestrixInputRoot root;
  std::istringstream in;
  in.setstate(std::ios::failbit);
  EXPECT_EXIT(InputParser(root).parse(in, false, ""), testing::ExitedWithCode(1),
              "\nERROR -> InputParser: reading from input failed\n");
}

TEST(ValidateSummary, keepsSilentBlocksOutAtVerbosityOne) {
  KestrixInputRoot root;
  std::istringstream in("PROJECT {\n title = a\n real_time_factor = 2\n}\n");
  InputParser parser(root);
  parser.parse(in, false, "");
  GlobalValues::instance().verbosity = 1;
  testing::internal::CaptureStderr();
  std::ostringstream out;
  EXPECT_FALSE(parser.validateSummary(out));
  GlobalValues::instance().verbosity = 3;
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(out.str(), "Input file has 1 warning and 1 error");
  EXPECT_EQ(root.getNumErrors(), 1U);
}

}  // namespace
}  // namespace KESTparse
