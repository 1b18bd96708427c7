#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRcouplingsub;

/// The block `COUPLING`.
class IRcoupling : public SchemaBlock<IRcoupling> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string type;
  std::string upstream_subdomain;
  std::string downstream_subdomain;
  bool two_way_coupling = false;
  int average_steps = 0;
  bool print_series = false;
  std::string upstream_subdomain1;
  std::string upstream_subdomain2;
  std::string downstream_subdomain1;
  std::string downstream_subdomain2;
  double factor_bifurcation = 0;
  double momentum_factor_up = 0;
  double espilon = 0;
  double momentum_factor_down = 0;
  std::string external_subdomain;
  std::string kestrix_subdomain;
  int iter_exchange = 0;  ///< [-]
  double tau = 0;         ///< [s]
  std::string check;

  IRcouplingsub* couplinghyd_ptr = nullptr;
  IRcouplingsub* couplingbed_ptr = nullptr;
  IRcouplingsub* couplingsusp_ptr = nullptr;
  IRcouplingsub* coupling_subsurface_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
