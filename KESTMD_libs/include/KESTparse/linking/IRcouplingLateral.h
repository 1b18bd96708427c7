#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

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

 protected:
  void createTags() override;
};

}  // namespace KESTparse
