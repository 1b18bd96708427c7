#include <gtest/gtest.h>
#include <omp.h>

#include <string>
#include <utility>
#include <vector>

#include "KESTparse/base/Assert.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/base/Logger.h"

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

TEST(Logger, showsByLevel) {
  GlobalValues& globalvalues = GlobalValues::instance();
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  getLogger().log(level::information, "told");
  getLogger().log(level::warning, "warned");
  getLogger().log(4, "too fine");
  globalvalues.verbosity = 1;
  getLogger().log(level::information, "silent");
  getLogger().log(level::warning, "silent");
  getLogger().log(0, "below errors");
  globalvalues.verbosity = 3;
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "-> told\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "\nWARNING -> warned\n\nWARNING -> below errors\n");
}

TEST(Logger, errorsEndTheProcess) {
  EXPECT_EXIT(getLogger().log(level::error, "broken"), testing::ExitedWithCode(1),
              "\nERROR -> broken\n");
}

TEST(Logger, errorsGoToTheSinksOfAHost) {
  std::vector<std::pair<int, std::string>> told;
  getLogger().addSink(
      [&told](int status, const std::string& text) { told.emplace_back(status, text); });
  GlobalValues& globalvalues = GlobalValues::instance();
  globalvalues.reportToSinks = true;
  globalvalues.errorFileStem = "run";
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  getLogger().log(level::error, "broken");
  getLogger().fatal("worse");
#pragma omp parallel num_threads(2)
#pragma omp single
  getLogger().log(level::error, "parallel");
  // The death tests fork, which wants a process without further threads.
  omp_pause_resource_all(omp_pause_hard);
  const std::string out = testing::internal::GetCapturedStdout();
  const std::string errors = testing::internal::GetCapturedStderr();
  globalvalues.reportToSinks = false;
  getLogger().clearSinks();
  EXPECT_EQ(out,
            "Simulation stopped due to error(s).\nA fatal error occured!\n"
            "Simulation stopped due to error(s).\n");
  EXPECT_EQ(errors, "\nERROR -> broken\n\nEXCEPTION -> worse\n\nERROR -> parallel\n");
  const std::vector<std::pair<int, std::string>> expected{
      {0, "broken"}, {-1, "For detailed information see 'run.err' file."}, {-1, "parallel"}};
  EXPECT_EQ(told, expected);
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
