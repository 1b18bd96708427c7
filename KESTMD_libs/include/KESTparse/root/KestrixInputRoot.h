#pragma once

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRdomain;
class IRproject;

/// The root of the schema and of the setup of a command file.
class KestrixInputRoot final : public SchemaBlock<KestrixInputRoot> {
 public:
  /// Builds the whole schema.
  KestrixInputRoot();

  void getDescription(std::ostream& out) const override;

  IRproject* proj_ptr = nullptr;
  IRdomain* dom_ptr = nullptr;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  [[nodiscard]] bool spellsOutUnknownNames() const override { return true; }
};

}  // namespace KESTparse
