#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/base/GlobalValues.h"

namespace KESTparse {
namespace {

std::string repeated(std::size_t count, char c) {
  return std::string(count, c);
}

TEST(WrapText, breaksAtTheLastBlankBeforeTheWidth) {
  const std::string word72 = repeated(72, 'a');
  const std::string word73 = repeated(73, 'a');
  const std::string word76 = repeated(76, 'b');
  struct Row {
    const char* name;
    std::string text;
    std::string wrapped;
  };
  const std::vector<Row> rows{
      {"empty", "", ""},
      {"short", "a b", "a b"},
      {"73 characters without a blank stay", word73, word73},
      {"a longer word stays too", repeated(200, 'a'), repeated(200, 'a')},
      {"the blank stays at the end of the line", word72 + " b", word72 + " \n   b"},
      {"the 74th character breaks", "x " + word72, "x \n   " + word72},
      {"further lines hold 75", word72 + " " + word76 + " c",
       word72 + " \n   " + word76 + " \n   c"},
      {"a blank at the very width does not break", word73 + " ", word73 + " "},
      {"a tab breaks as a blank does", "x\t" + word73, "x\t\n   " + word73},
      {"a leading blank is no break", " " + word76, " " + word76},
      {"line feeds", "a\nb\n", "a\n   b\n   "},
      {"a line feed in front", "\na", "\n   a"},
      {"the first character of a line is not examined", "a\n\nb", "a\n   \nb"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(wrapText(row.text), row.wrapped) << row.name;
  }
}

TEST(Console, showsByLevel) {
  GlobalValues& globalvalues = GlobalValues::instance();
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  console().show(level::information, "told");
  console().show(level::warning, "warned");
  console().show(4, "too fine");
  globalvalues.verbosity = 1;
  console().show(level::information, "silent");
  console().show(level::warning, "silent");
  console().show(0, "below errors");
  globalvalues.verbosity = 3;
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "-> told\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "\nWARNING -> warned\n\nWARNING -> below errors\n");
}

TEST(Console, errorsEndTheProcess) {
  EXPECT_EXIT(console().endWithError("broken"), testing::ExitedWithCode(1), "\nERROR -> broken\n");
}

TEST(Console, aHostThatLivesOnPrintsNothing) {
  QuietConsole host;
  GlobalValues values;
  values.console = &host;
  const ActiveValues active(values);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  console().show(level::warning, "warned");
  const auto stopOf = [](auto step) {
    try {
      step();
    } catch (const Stopped& stop) {
      return std::pair(stop.kind, stop.text);
    }
    return std::pair(Stopped::Kind::thrown, std::string("nothing"));
  };
  EXPECT_EQ(stopOf([] { console().endWithError("broken"); }),
            std::pair(Stopped::Kind::error, std::string("broken")));
  EXPECT_EQ(stopOf([] { ASSERT(false, "worse"); }),
            std::pair(Stopped::Kind::assertion, std::string("worse")));
  EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
}

TEST(Assertion, showsTheMessageOrTheExpression) {
  const int answer = 41;
  EXPECT_DEATH(
      ASSERT(answer == 42, "answer is " << answer),
      "EXCEPTION -> answer is 41, in file: .*ConsoleTest.cpp on\\s+line [0-9]+,\\s+Version");
  EXPECT_DEATH(ASSERT(answer == 42, ""), "EXCEPTION -> answer == 42, in file: ");
}

}  // namespace
}  // namespace KESTparse
