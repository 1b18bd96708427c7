#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/ListParser.h"
#include "KESTparse/framework/Range.h"

namespace KESTparse {
namespace {

TEST(RealSyntax, tellsWhatIsWrong) {
  for (const char* valid : {"1", "-1", "+1", "1.", "1.5", "1e5", "1E5", "1e+5", "1.e5", "1e+",
                            "1e-", "+e5", "-E3", "007", "1e007"}) {
    EXPECT_EQ(realSyntaxFault(valid), "") << valid;
  }
  for (const char* unrecognised :
       {"+", "-", "1e", "1.e", "1a", "a", "1 2", "1.5\t3", "1e5 ", "1e5\t"}) {
    EXPECT_EQ(realSyntaxFault(unrecognised),
              "Value '" + std::string(unrecognised) + "' can not be recognized as a double");
  }
  const std::vector<std::pair<std::string, int>> stages{
      {".5", 1},   {"e5", 1},    {"abc", 1},  {"inf", 1},   {"nan", 1},
      {"-.5", 2},  {"++1", 2},   {"1ab", 3},  {"1,5", 3},   {"0x10", 3},
      {"1..5", 4}, {"1.2.3", 5}, {"1e.5", 6}, {"1e5e5", 7}, {"1e5\t3", 7}};
  for (const auto& [text, stage] : stages) {
    EXPECT_EQ(realSyntaxFault(text),
              "Value '" + text + "' is not a double (last_stage: " + std::to_string(stage) + ")");
  }
  EXPECT_EQ(realSyntaxFault(""), "Empty value instead of a double found");
}

TEST(IntegerSyntax, tellsWhatIsWrong) {
  EXPECT_EQ(integerSyntaxFault("-"), "");
  EXPECT_EQ(integerSyntaxFault("-007"), "");
  EXPECT_EQ(integerSyntaxFault(""), "Empty string as value received");
  EXPECT_EQ(integerSyntaxFault("+5"), "Character '+' is invalid for an integer");
  EXPECT_EQ(integerSyntaxFault("1.5"), "Non numeric character '.' found");
  EXPECT_EQ(integerSyntaxFault("1-"), "Non numeric character '-' found");
}

/// What a text stream makes of a text.
template <typename T>
Extracted<T> byStream(const std::string& text) {
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  Extracted<T> result;
  result.ok = static_cast<bool>(in >> result.value);
  in.clear();
  result.consumed = static_cast<std::size_t>(in.tellg());
  return result;
}

template <typename T>
void expectAsStream(const std::string& text, const Extracted<T>& extracted) {
  const Extracted<T> expected = byStream<T>(text);
  EXPECT_EQ(extracted.value, expected.value) << "'" << text << "'";
  EXPECT_EQ(extracted.ok, expected.ok) << "'" << text << "'";
  EXPECT_EQ(extracted.consumed, expected.consumed) << "'" << text << "'";
}

TEST(Extraction, isThatOfATextStream) {
  std::mt19937 random(20201122);
  const std::string characters = "0123456789012345678901234567890.eE+- \tx";
  std::uniform_int_distribution<std::size_t> length(0, 12);
  std::uniform_int_distribution<std::size_t> place(0, characters.size() - 1);
  std::vector<std::string> texts{"1e999", "-1e999", "1e-400", "2147483648", "-2147483649", "1e+",
                                 "+e5",   "1.",     "0x1p3",  "inf",        "  12 13",     "-"};
  for (int i = 0; i < 200000; ++i) {
    std::string text(length(random), ' ');
    for (char& c : text) {
      c = characters[place(random)];
    }
    texts.push_back(std::move(text));
  }
  for (const std::string& text : texts) {
    expectAsStream(text, extractDouble(text));
    expectAsStream(text, extractInt(text));
  }
  EXPECT_EQ(stringToDouble("1e999"), std::numeric_limits<double>::max());
  EXPECT_EQ(stringToInt("99999999999"), INT_MAX);
}

TEST(Conversions, writeAsStreamsAndPrintfDo) {
  for (const double value :
       {0.0, -1.0, 9.81, 1e-06, 1000.0, 1e32, 123456.0, 1234567.0, 0.1 + 0.2}) {
    std::ostringstream out;
    out << value;
    EXPECT_EQ(doubleToString(value), out.str());
  }
  EXPECT_EQ(doubleToFixed(12.0005), "12.000500");
  EXPECT_EQ(doubleToFixed(-1e300).size(), 309U);
  EXPECT_TRUE(stringToBool("on") && stringToBool("true") && stringToBool("1") &&
              stringToBool("yes"));
  EXPECT_FALSE(stringToBool("Yes") || stringToBool("") || stringToBool("y"));
  EXPECT_EQ(split(" ,", ", a,,b "), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(trim(" \ta b\t "), "a b");
  EXPECT_EQ(trim("\n a"), "\n a");
}

TEST(ResolvePath, joinsRelativeNamesOnly) {
  GlobalValues::instance().basePath = "./";
  EXPECT_EQ(resolvePath("g.2dm"), ".//g.2dm");
  EXPECT_EQ(resolvePath("g.2dm", "data"), "data/g.2dm");
  EXPECT_EQ(resolvePath("/a/b"), "/a/b");
  EXPECT_EQ(resolvePath("c:b"), "c:b");
  EXPECT_EQ(resolvePath("1:b"), ".//1:b");
  EXPECT_EQ(resolvePath(""), "");
}

TEST(Range, describesAndContains) {
  using R = Range<double>;
  EXPECT_EQ(R().describe(), "");
  EXPECT_EQ(R(true, false, false, false, 0, 0).describe(), "x &gt; 0");
  EXPECT_EQ(R(true, true, false, false, -1, 0).describe(), "x &gt;= -1");
  EXPECT_EQ(R(false, false, true, true, 0, 5).describe(), "x &lt;= 5");
  EXPECT_EQ(R(true, true, true, false, 0, 1).describe(), "0 &lt;= x &lt; 1");
  EXPECT_EQ(R(true, false, true, true, 0, 100000).describe(), "0 &lt; x &lt;= 100000");
  const R halfOpen(true, true, true, false, 0, 1);
  EXPECT_TRUE(halfOpen.contains(0) && halfOpen.contains(0.5));
  EXPECT_FALSE(halfOpen.contains(1) || halfOpen.contains(-0.1));
}

TEST(ListParser, namesItsKind) {
  EXPECT_EQ(WhiteSpaceListParser<double>().typeName(), "whitespace separated list of reals");
  EXPECT_EQ(WhiteSpaceListParser<int>(1).typeName(), "whitespace separated list of 1 integer");
  EXPECT_EQ(WhiteSpaceListParser<std::string>(-2).typeName(),
            "whitespace separated list of up to 2 strings");
  EXPECT_EQ(WhiteSpaceListParser<int>(0, 1).typeName(),
            "whitespace separated list of sublist of integers");
  EXPECT_EQ(WhiteSpaceListParser<int>(-1, 1).typeName(),
            "whitespace separated list of sublists of up to 1 integer");
}

TEST(ListParser, tellsWhatIsWrong) {
  struct Row {
    std::string text;
    int itemCount;
    std::string fault;
  };
  for (const Row& row : std::vector<Row>{
           {"(1 2 3)", 0, ""},
           {"( 1\n2\t3 )", 3, ""},
           {"()", 0, "Empty list found: '()'"},
           {"( )", 0, "Empty list found: '( )'"},
           {"(1 (2) 3)", 0, "A brace ( is not allowed in the whitespace separated list"},
           {"(1 2 3)", 2, "Expected 2 items in list but found 3"},
           {"(1 2)", -1, "Expected up to 1 item in list but found 2"},
           {"(1 +2)", 0, "List item nr. 2 is invalid: Character '+' is invalid for an integer"}}) {
    WhiteSpaceListParser<int> parser(row.itemCount);
    EXPECT_EQ(parser.fault(row.text), row.fault) << row.text;
  }
}

}  // namespace
}  // namespace KESTparse
