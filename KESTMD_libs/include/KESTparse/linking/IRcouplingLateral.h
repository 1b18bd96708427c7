#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "KESTparse/framework/Derived.h"
#include "KESTparse/framework/RuleMessage.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRgeom1d;

/// The block `COUPLING_LATERAL`.
class IRcouplingLateral : public SchemaBlock<IRcouplingLateral> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string kestchain;
  std::string kestplane;
  std::string connections_filename;
  double c_m = 0;
  std::string momentum_sink;
  double momentum_factor = 0;
  bool suppressed_overfall = false;
  bool connections_automatic = false;
  std::vector<int> connections_index;
  double connections_distance = 0;  ///< [m]
  bool weir_from_dyke1D = false;
  bool weir_determination_nodes = false;
  double damping_factor = 0;  ///< [-]
  double factor_adjust = 0;
  bool print_series = false;

  /// The connections of the file, as parallel lists in its order.
  struct Connections {
    std::vector<int> crossSectionIndices;        ///< place in the order of the 1D region
    std::vector<std::string> crossSectionNames;  ///< as they stand in the file
    std::vector<int> dykeLocations;              ///< 0 left, 1 right, looking downstream
    std::vector<int> firstNodes;                 ///< first node of the 2D edge
    std::vector<int> secondNodes;                ///< second node of the 2D edge
  };
  Connections connections;  ///< filled by the validation

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  /// What is wrong with the connections, and where.
  struct Fault {
    std::string text = {};  ///< as the report shows it; empty for nothing
    std::string_view rule = {};
    std::string sentence = {};
    std::string help = {};
    Subject subject = {.block = nullptr};
  };

  /// The fault of `rule` at `subject`; `text` is what the report shows.
  template <typename... Values>
  static Fault fault(const RuleWords<std::type_identity_t<Values>...>& rule, const Subject& subject,
                     std::string_view text, const Values&... values);

  /// Fills the connections from their file. What was read before a fault stays.
  Fault readConnections();
  Fault readConnections(std::string_view text, const IRgeom1d* geometry);

  Derived<Fault> fault_;
};

}  // namespace KESTparse
