#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "KESTcore/Mesh.h"

namespace {

using Kestrix::Mesh;
using Kestrix::MeshNodeIndex;

TEST(Mesh, readsCardsOfEachKindAndTellsThoseThatCannotBeRead) {
  const std::string text =
      "MESH2D\n"
      "E4Q 9 4 3 2 1 -7\r\n"
      "E3T 5 1 2\t+3 2 0.5 0.5\n"
      "E6T 6 1 20 2 30 3 40 1\n"
      "E9Q 7 1 20 2 30 3 40 4 50 60 1\n"
      "E2L 8 1 2 3\n"
      "E4Q 1 1 2 3 4\n"
      "  ND 1 +1.5 -2e3 .25 left over\n"
      "ND 2 1 nan 3\n"
      "ND 3 1,5 2 3\n"
      "E3T 2147483648 1 2 3 1\n"
      "ND 70 0 0 0";
  const Mesh mesh = Kestrix::readMesh(text, true);
  const std::vector<std::array<std::int32_t, 4>> corners{
      {4, 3, 2, 1}, {1, 2, 3, Mesh::noCorner}, {1, 2, 3, Mesh::noCorner}, {1, 2, 3, 4}};
  EXPECT_EQ(mesh.corners, corners);
  EXPECT_EQ(mesh.elementIds, (std::vector<std::int32_t>{9, 5, 6, 7}));
  EXPECT_EQ(mesh.materials, (std::vector<std::int32_t>{-7, 2, 1, 1}));
  EXPECT_EQ(mesh.nodeIds, (std::vector<std::int32_t>{1, 70}));
  EXPECT_EQ(mesh.nodes[0], (std::array{1.5, -2000.0, 0.25}));
  std::vector<std::size_t> faulty;
  for (const Kestrix::MeshFault& fault : mesh.faults) {
    faulty.push_back(Kestrix::meshPosition(text, fault.place).line);
  }
  EXPECT_EQ(faulty, (std::vector<std::size_t>{7, 9, 10, 11}));
  EXPECT_EQ(Kestrix::meshPosition(text, mesh.elementPlaces[2]).line, 4U);
  EXPECT_EQ(Kestrix::meshPosition(text, mesh.nodePlaces[0] + 2).column, 3U);
  EXPECT_TRUE(Kestrix::readMesh(text).nodePlaces.empty());
}

TEST(Mesh, joinsNodeStringsAndTakesTheirNames) {
  const Mesh mesh = Kestrix::readMesh(
      "NS 1 2 3\nND 1 0 0 0\nNS 4 -5 \"inflow\"\nNS 6 -7\nNS 8 9 by_name\nNS -2147483648\nNS 10 11\n");
  ASSERT_EQ(mesh.strings.size(), 4U);
  EXPECT_EQ(mesh.strings[0].name, "inflow");
  EXPECT_EQ(mesh.strings[0].nodeIds, (std::vector<std::int32_t>{1, 2, 3, 4, 5}));
  EXPECT_EQ(mesh.strings[1].name, "");
  EXPECT_EQ(mesh.strings[2].name, "by_name");
  EXPECT_EQ(mesh.strings[3].nodeIds, (std::vector<std::int32_t>{10, 11}));
  EXPECT_EQ(mesh.faults.size(), 1U);
}

TEST(Mesh, joinsWhatIsReadOfALargeTextInParts) {
  // One string runs through the whole text, with all else between its lines.
  constexpr std::int32_t count = 60000;
  std::string text;
  for (std::int32_t i = 1; i <= count; ++i) {
    const std::string id = std::to_string(i);
    text += "ND " + id + " " + id + ".125 -" + id + " 1e-3\nE6T " + id + " 1 " + id +
            " 2 5 3 6 7\nNS " + id + "\nND faulty\n";
  }
  text += "NS -1 \"long\"\n";
  const Mesh mesh = Kestrix::readMesh(text, true);
  ASSERT_EQ(mesh.nodes.size(), count);
  ASSERT_EQ(mesh.elementIds.size(), count);
  ASSERT_EQ(mesh.sideNodes.size(), 3U * count);
  ASSERT_EQ(mesh.faults.size(), count);
  ASSERT_EQ(mesh.strings.size(), 1U);
  EXPECT_EQ(mesh.strings[0].name, "long");
  ASSERT_EQ(mesh.strings[0].nodeIds.size(), count + 1U);
  for (std::uint32_t i = 0; i < count; ++i) {
    const auto id = static_cast<std::int32_t>(i + 1);
    ASSERT_EQ(mesh.nodeIds[i], id);
    ASSERT_EQ(mesh.nodes[i], (std::array{id + 0.125, -1.0 * id, 0.001}));
    ASSERT_EQ(mesh.sideNodes[3U * i].element, i);
    ASSERT_EQ(mesh.sideNodes[3U * i].nodeId, id);
    ASSERT_EQ(mesh.strings[0].nodeIds[i], id);
    ASSERT_LT(mesh.nodePlaces[i], mesh.elementPlaces[i]);
    ASSERT_LT(mesh.elementPlaces[i], mesh.faults[i].place);
  }
}

TEST(Mesh, readsEachNumberAsTheNearestOne) {
  const std::vector<std::string> written{"0",
                                         "-0.0",
                                         "0.1",
                                         "123456.789012345",
                                         "2600000.17",
                                         "5.",
                                         ".5",
                                         "999999999999999",
                                         "1e22",
                                         "+0.7",
                                         "-1.5e-7",
                                         "0.30000000000000004441",
                                         "0.00000000000001"};
  for (const std::string& word : written) {
    const Mesh mesh = Kestrix::readMesh("ND 000000000012 " + word + " 0 0\n");
    ASSERT_EQ(mesh.nodes.size(), 1U) << word;
    EXPECT_EQ(mesh.nodeIds[0], 12);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(mesh.nodes[0][0]),
              std::bit_cast<std::uint64_t>(std::stod(word)))
        << word;
  }
}

TEST(Mesh, findsNodesByDenseAndBySparseIds) {
  const std::vector<std::int32_t> following{4, 5, 6};
  const std::vector<std::int32_t> dense{5, 3, 9, 3};
  const std::vector<std::int32_t> sparse{2000000000, -2000000000, 7, 7};
  EXPECT_EQ(MeshNodeIndex(following).find(6), 2U);
  EXPECT_EQ(MeshNodeIndex(following).find(3), MeshNodeIndex::none);
  EXPECT_EQ(MeshNodeIndex(following).find(7), MeshNodeIndex::none);
  EXPECT_EQ(MeshNodeIndex(dense).find(3), 1U);
  EXPECT_EQ(MeshNodeIndex(dense).find(4), MeshNodeIndex::none);
  EXPECT_EQ(MeshNodeIndex(dense).find(INT32_MIN), MeshNodeIndex::none);
  EXPECT_EQ(MeshNodeIndex(sparse).find(-2000000000), 1U);
  EXPECT_EQ(MeshNodeIndex(sparse).find(7), 2U);
  EXPECT_EQ(MeshNodeIndex(sparse).find(8), MeshNodeIndex::none);
  EXPECT_EQ(MeshNodeIndex({}).find(1), MeshNodeIndex::none);
}

}  // namespace
