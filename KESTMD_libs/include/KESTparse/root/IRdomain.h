#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRcalc1d;
class IRcontroller;
class IRcouplings;
class IRkestSub;
class IRkestextern;
class IRkestplane;
class IRparallel;
class IRphysprop;

/// The block `DOMAIN`.
class IRdomain : public SchemaBlock<IRdomain> {
 public:
  using SchemaBlock::SchemaBlock;

  void getDescription(std::ostream& out) const override;

  std::string multiregion;

  IRparallel* parallel_ptr = nullptr;
  IRphysprop* pp_ptr = nullptr;
  std::vector<IRcalc1d*> cr1d_ptrV;
  std::vector<IRkestplane*> kestplane_ptrV;
  std::vector<IRkestSub*> kestSub_ptrV;
  std::vector<IRkestextern*> kestextern_ptrV;
  IRcouplings* couplings_ptr = nullptr;
  std::vector<IRcontroller*> ctrl_ptrV;
  void getLongDescription(std::ostream& out) const override;
  void getExample(std::ostream& out) const override;
  void populate() override;
  unsigned validate() override;

  /// Whether a controller moves what is called `location` in the 1D region `region`. The answer is
  /// that of the tree as the last validation of the domain found it.
  [[nodiscard]] bool isControlled(std::string_view region, std::string_view location) const;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
  [[nodiscard]] bool spellsOutUnknownNames() const override { return true; }

 private:
  /// The places that controllers move, by region.
  using Places = std::map<std::string, std::set<std::string, std::less<>>, std::less<>>;

  [[nodiscard]] Places findControlledPlaces() const;

  /// Collected when it is first asked for: a domain may hold many sources and many controllers.
  mutable std::optional<Places> controlledPlaces_;
};

}  // namespace KESTparse
