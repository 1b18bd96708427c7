/// \file
/// What the validation derives from the setup and no document shows.

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/linking/IRcouplingLateral.h"
#include "KESTparse/linking/IRcouplings.h"
#include "KESTparse/root/IRdomain.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/subsurface/IRbndrSub.h"
#include "KESTparse/subsurface/IRgeomSub.h"
#include "KESTparse/subsurface/IRkestSub.h"
#include "KESTparse/subsurface/IRmaterialSub.h"
#include "KESTparse/subsurface/IRsoilSub.h"
#include "KESTparse/subsurface/IRzoneSub.h"
#include "TemporaryFile.h"

namespace KESTparse {
namespace {

class DerivedTest : public testing::Test {
 protected:
  DerivedTest() { GlobalValues::instance() = {}; }
  ~DerivedTest() override { GlobalValues::instance() = {}; }

  /// Reads the setup and validates it.
  void read(const std::string& setup) {
    std::istringstream in(setup);
    InputParser(root_).parse(in, false, "");
    root_.validate();
  }

  KestrixInputRoot root_;
};

class ConnectionsTest : public DerivedTest {
 protected:
  /// The lateral coupling of a setup with a chain of the given cross sections.
  IRcouplingLateral& couplingOf(const std::string& order, const std::string& connections) {
    file_ = std::make_unique<TemporaryFile>(connections);
    read("DOMAIN {\n KESTCHAIN_1D {\n region_name = River\n GEOMETRY {\n cross_section_order = " +
         order +
         "\n }\n }\n COUPLINGS {\n COUPLING_LATERAL {\n kestchain = rIVER\n kestplane = plain\n"
         " weir_from_dyke1D = yes\n connections_filename = " +
         file_->path() + "\n }\n }\n}\n");
    return *root_.dom_ptr->couplings_ptr->couplingLateral_ptrV.front();
  }

 private:
  std::unique_ptr<TemporaryFile> file_;
};

using Names = std::vector<std::string>;
using Numbers = std::vector<int>;

TEST_F(ConnectionsTest, fillFiveParallelLists) {
  const auto& connections =
      couplingOf("( A B C )",
                 "// bank\nC 1 11 12 a remark\nB 0\n 21 22\n# left\nC 0 31 32\nend\nA 0 1 2\n")
          .connections;
  EXPECT_EQ(connections.crossSectionNames, (Names{"C", "B", "C"}));
  EXPECT_EQ(connections.crossSectionIndices, (Numbers{2, 1, 2}));
  EXPECT_EQ(connections.dykeLocations, (Numbers{1, 0, 0}));
  EXPECT_EQ(connections.firstNodes, (Numbers{11, 21, 31}));
  EXPECT_EQ(connections.secondNodes, (Numbers{12, 22, 32}));
}

TEST_F(ConnectionsTest, pointToTheFirstPlaceOfASection) {
  const IRcouplingLateral& coupling =
      couplingOf("( A B A C )", "C 0 1 2\nA 0 1 2\na 0 1 2\nunknown 0 1 2\n");
  EXPECT_EQ(coupling.connections.crossSectionIndices, (Numbers{3, 0, 0, 0}));
  EXPECT_TRUE(coupling.getErrors().empty());
}

TEST_F(ConnectionsTest, keepWhatStandsBeforeAFault) {
  const IRcouplingLateral& coupling = couplingOf("( A B )", "A 1 1 2\nB 2 3 4\nA 0 5 6\n");
  EXPECT_EQ(coupling.connections.crossSectionNames, (Names{"A", "B"}));
  EXPECT_EQ(coupling.connections.dykeLocations, (Numbers{1}));
  EXPECT_EQ(coupling.connections.secondNodes, (Numbers{2}));
  EXPECT_EQ(coupling.getErrors().size(), 1);
}

TEST_F(DerivedTest, soilsFindTheirZonesAndBoundariesTheirKinds) {
  const TemporaryFile series("0 1\n1 1\n");
  const std::string zone = "ZONE {\n type = default\n name = ";
  const std::string soil =
      "SOIL_DEF {\n kf = 0.1\n RETENTION_MODEL {\n type = van_genuchten\n n = 2\n alpha = 8\n }\n"
      " zone = ";
  const auto boundary = [&series](const std::string& type, const std::string& face) {
    return "BOUNDARY {\n type = " + type + "\n face = " + face + "\n name = " + type +
           "\n file = " + series.path() + "\n from_to1 = ( 0 1 )\n from_to2 = ( 0 1 )\n}\n";
  };
  read(
      "DOMAIN {\n KESTSUB {\n region_name = ground\n GEOMETRY {\n ref_coordinates = ( 0 0 0 )\n"
      " base_vector_i = ( 1 0 0 )\n base_vector_j = ( 0 1 0 )\n cell_size = 0.5\n no_cells_i = 4\n"
      " no_cells_j = 4\n no_cells_k = 2\n" +
      zone + "sand\n}\n" + zone + "clay\n}\n}\n" +
      "TIMESTEP {\n time_step = 1\n total_run_time = 60\n}\nPARAMETER {\n}\n"
      "INITIAL {\n type = theta\n value = 0.3\n}\n" +
      boundary("bounce_back", "front") + boundary("saturation", "north") +
      boundary("pressure", "east") + boundary("hydrostatic", "west") +
      boundary("seepage", "south") + boundary("zero_gradient", "back") +
      boundary("coupling_kestplane", "north") + "MATERIAL {\n" + soil + "clay\n}\n" + soil +
      "sand\n}\n}\nOUTPUT {\n output_time_step = 1\n console_time_step = 1\n}\n}\n}\n");
  const IRkestSub& region = *root_.dom_ptr->kestSub_ptrV.front();
  std::string kinds;
  std::string faces;
  for (const IRbndrSub* const condition : region.bndr_ptrV) {
    kinds += std::to_string(static_cast<int>(condition->kind));
    faces += condition->faceLetter;
  }
  EXPECT_EQ(kinds, "0123456");
  EXPECT_EQ(faces, "fnewsbn");
  EXPECT_EQ(region.material_ptr->soil_ptrV[0]->zoneSub_ptr_, region.geom_ptr->zones_ptrV[1]);
  EXPECT_EQ(region.material_ptr->soil_ptrV[1]->zoneSub_ptr_, region.geom_ptr->zones_ptrV[0]);
}

}  // namespace
}  // namespace KESTparse
