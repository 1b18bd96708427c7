#include <H5Cpp.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "KESTcore/StandardSerie.h"
#include "KESTparse/base/Files.h"
#include "TemporaryFile.h"
#include "h5io/SolutionTimes.h"

namespace {

using Table = std::vector<std::vector<double>>;

Table tableOf(const std::string& content) {
  const TemporaryFile file(content);
  Kestrix::Table table;
  Kestrix::StandardSerie(file.path()).copyTo(table);
  Table rows;
  for (std::size_t row = 0; row < table.size(); ++row) {
    rows.emplace_back(table[row].begin(), table[row].end());
  }
  return rows;
}

TEST(StandardSerie, readsRowsOfNumbers) {
  EXPECT_EQ(tableOf("0 1.5\n10 2.5\n"), (Table{{0, 1.5}, {10, 2.5}}));
  EXPECT_EQ(tableOf("# a\n// b\n \t\r\n0 1 // c\r\n1\t2 # d"), (Table{{0, 1}, {1, 2}}));
  EXPECT_EQ(tableOf("1/2/2020 5\n"), (Table{{1, 2, 2020, 5}}));
  EXPECT_EQ(tableOf("1 2 words\n3 4\n"), (Table{{1, 2}, {3, 4}}));
  EXPECT_EQ(tableOf("# nothing\n"), Table{});
  EXPECT_EQ(tableOf("time discharge\n"), Table{});
}

TEST(StandardSerie, refusesRowsOfAnotherLength) {
  // Where the report is wrapped depends on the length of the path.
  const auto expectRefusal = [](const std::string& content, const std::string& text) {
    const TemporaryFile file(content);
    EXPECT_DEATH(Kestrix::StandardSerie(file.path()),
                 std::regex_replace(text, std::regex(" "), "\\s+"));
  };
  expectRefusal("0 1\n0 1 2\n", "2: i expected a line with 2 numbers, but found more than that!");
  expectRefusal("0 1\n\n0\n", "3: I expected a line with 2 numbers, but found 1numbers.");
  expectRefusal("0 1\n # empty\n", "2: I expected a line with 2 numbers, but found 0numbers.");
  expectRefusal("time Q\n0 1\n", "2: i expected a line with 0 numbers, but found more than that!");
}

TEST(StandardSerie, interpolates) {
  const TemporaryFile file("0 1.5 0\n10 2.5 1\n10 3.5 2\n20 4 3\n");
  const Kestrix::StandardSerie serie(file.path());
  EXPECT_EQ(serie.size(), 4U);
  EXPECT_EQ(serie.value(5, 0), 2.0);
  EXPECT_EQ(serie.value(-1, 0), 1.5);
  EXPECT_EQ(serie.value(99, 1), 3.0);
  EXPECT_EQ(serie.value(10, 0), 2.5);
  EXPECT_EQ(serie.value(15, 0), 3.75);
  EXPECT_DEATH((void)serie.value(0, 2), "columnIndex < yData.size\\(\\)");
}

TEST(StandardSerie, reportsAFileThatCannotBeOpened) {
  EXPECT_EXIT(
      Kestrix::StandardSerie("none"), testing::ExitedWithCode(1),
      "Error trying to access 'none' which could not be opened. Make sure, the\\s+file exists");
}

TEST(ReadFile, findsAFileThatHasComeMeanwhile) {
  const std::string path = TemporaryFile("gone").path();
  EXPECT_FALSE(KESTparse::readFile(path).wasRead);
  std::ofstream(path) << "here";
  EXPECT_EQ(KESTparse::readFile(path).content, "here");
  std::filesystem::remove(path);
  EXPECT_FALSE(KESTparse::readFile(path).wasRead);
}

TEST(MeshNodeStrings, keepsTheLastLineOfAName) {
  const TemporaryFile mesh(
      "MESH2D\nND 1 0 0 0\nNS 1 2 3 -4 outlet\n NS\t5 inlet\r\nNS 1 2 -3 \"a\"\nNS 4 5 -6 a\n"
      "NS\nNS b\nNSX 1 c\nNS 7 8\n   \nNS 9 -10 last");
  const auto& strings = KESTparse::meshNodeStrings(mesh.path());
  const std::string padding(300000, 'x');
  const TemporaryFile large("NS 1 -2 first\n" + padding + "\nNS 3 -4 second\n" + padding +
                            " S\nNS 5 -6 third");
  EXPECT_EQ(KESTparse::meshNodeStrings(large.path()),
            (KESTparse::NodeStrings{{"first", {1, 2}}, {"second", {3, 4}}, {"third", {5, 6}}}));
  const KESTparse::NodeStrings expected{
      {"outlet", {1, 2, 3, 4}}, {"inlet", {5}}, {"a", {4, 5, 6}}, {"NS", {}}, {"b", {}}, {"8", {7}},
      {"last", {9, 10}}};
  EXPECT_EQ(strings, expected);
  // A second question is not a second reading.
  std::ofstream(mesh.path()) << "NS 1 -2 other\n";
  EXPECT_EQ(&KESTparse::meshNodeStrings(mesh.path()), &strings);
  EXPECT_TRUE(strings.contains("outlet"));
}

TEST(MeshNodeStrings, refusesWhatIsNoNodeId) {
  const TemporaryFile word("NS 1 x a\n");
  EXPECT_THROW(KESTparse::meshNodeStrings(word.path()), std::invalid_argument);
  const TemporaryFile huge("NS 99999999999 a\n");
  EXPECT_THROW(KESTparse::meshNodeStrings(huge.path()), std::out_of_range);
  const TemporaryFile leading("NS +1 2x -2147483648 a\n");
  EXPECT_EQ(KESTparse::meshNodeStrings(leading.path()).at("a")[1], 2);
  EXPECT_DEATH(KESTparse::meshNodeStrings("none"), "Cannot open the grid file 'none'.");
}

TEST(SolutionTimes, areThoseOfTheGroup) {
  const TemporaryFile file("");
  {
    const H5::H5File result(file.path(), H5F_ACC_TRUNC);
    for (const char* group : {"/RESULTS", "/RESULTS/CellsAll", "/RESULTS/CellsAll/Depth"}) {
      result.createGroup(group);
    }
    const auto stamp = [](const H5::H5Object& solution, double time) {
      solution.createAttribute("t", H5::PredType::NATIVE_DOUBLE, H5::DataSpace(H5S_SCALAR))
          .write(H5::PredType::NATIVE_DOUBLE, &time);
    };
    const std::string folder = "/RESULTS/CellsAll/Depth/";
    stamp(result.createGroup(folder + "a"), 0.0);
    stamp(
        result.createDataSet(folder + "b", H5::PredType::NATIVE_DOUBLE, H5::DataSpace(H5S_SCALAR)),
        12.5);
    H5::IntType type(H5::PredType::NATIVE_INT);
    type.commit(result, folder + "c");
    stamp(type, 25.0);
  }
  EXPECT_EQ(h5io::getSolutionTimes(file.path()), (std::vector<double>{0.0, 12.5, 25.0}));
  std::filesystem::remove(file.path());
  EXPECT_EQ(h5io::getSolutionTimes(file.path()).size(), 3U) << "read once for the process";
}

TEST(SolutionTimes, areNoneAfterAFailure) {
  const auto told = [](const std::string& path) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(h5io::getSolutionTimes(path).empty());
    return testing::internal::GetCapturedStderr();
  };
  const TemporaryFile text("no result file");
  EXPECT_NE(
      told(text.path()).find("Determining the existing solution times failed: Opening the HDF5"),
      std::string::npos);
  EXPECT_EQ(told(text.path()), told(text.path())) << "told again each time";
  const TemporaryFile bare("");
  { const H5::H5File result(bare.path(), H5F_ACC_TRUNC); }
  EXPECT_NE(told(bare.path()).find("/RESULTS/CellsAll/Depth"), std::string::npos);
  const TemporaryFile timeless("");
  {
    const H5::H5File result(timeless.path(), H5F_ACC_TRUNC);
    for (const char* group : {"/RESULTS", "/RESULTS/CellsAll", "/RESULTS/CellsAll/Depth",
                              "/RESULTS/CellsAll/Depth/first"}) {
      result.createGroup(group);
    }
  }
  EXPECT_NE(told(timeless.path()).find("attribute 't' failed."), std::string::npos);
}

}  // namespace
