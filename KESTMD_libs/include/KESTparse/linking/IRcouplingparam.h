#pragma once

#include <string>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

/// The block `PARAMETER`.
class IRcouplingparam : public SchemaBlock<IRcouplingparam> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string max_time_level;
  double factor_time_step_reduction = 0;
  std::string server;
  std::string ip_address;
  int port = 0;
  int max_buffer = 0;
  int packet_size = 0;
  std::string log_network;

 protected:
  void createTags() override;
  void checkRules() override;
};

}  // namespace KESTparse
