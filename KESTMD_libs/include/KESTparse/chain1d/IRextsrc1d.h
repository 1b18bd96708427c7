#pragma once

#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRgeom1d;

/// The block `EXTERNAL_SOURCE` under `SOURCE` of a 1D region.
class IRextsrc1d : public SchemaBlock<IRextsrc1d> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string name;
  std::string type;
  std::string file;
  Kestrix::Table file_table;  ///< the rows of that file
  std::string cross_section;
  std::vector<std::string> cross_sections;
  std::string side;
  double weir_crest_height = 0;
  double weir_crest_length = 0;
  double poleni = 0;
  std::string momentum_sink;
  double momentum_factor = 0;
  double opening_width = 0;
  double contraction_coeff = 0;
  double correction_coeff = 0;

 protected:
  void createTags() override;
  void checkRules() override;

 private:
  void checkInflow();
  void checkOffChannel(const IRgeom1d& geometry);
};

}  // namespace KESTparse
