#pragma once

#include <map>
#include <string>
#include <vector>

#include "KESTparse/framework/Derived.h"
#include "KESTparse/framework/SchemaBlock.h"

namespace KESTparse {

class IRcalc1d;
class IRcontroller;
class IRctrlmanipulatedvar;
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
  void addStandingBlocks() override;

  /// Whether a controller moves what is called `location` in the 1D region `region`.
  [[nodiscard]] bool isControlled(std::string_view region, std::string_view location) const;
  /// A place that one more controller moves.
  struct ControlledAgain {
    std::string place;  ///< {region}.{location}
    const IRctrlmanipulatedvar* again;
    const IRctrlmanipulatedvar* first;
  };
  /// The places that one more controller moves, in the order of the controllers and their
  /// variables.
  [[nodiscard]] const std::vector<ControlledAgain>& placesControlledAgain() const;
  /// The first 1D region of that name; null when there is none.
  [[nodiscard]] const IRcalc1d* findChain(std::string_view region_name) const;
  /// The first 2D region of that name; null when there is none.
  [[nodiscard]] const IRkestplane* findPlane(std::string_view region_name) const;
  /// What `perhaps` makes of the name of a 1D or 2D region.
  [[nodiscard]] std::string perhapsRegion(std::string_view region_name) const;

 protected:
  void createSubBlocks() override;
  void createTags() override;
  void checkRules() override;
  [[nodiscard]] bool spellsOutUnknownNames() const override { return true; }

 private:
  /// The places that controllers move.
  struct ControlledPlaces {
    using ByLocation = std::map<std::string, const IRctrlmanipulatedvar*, std::less<>>;
    std::map<std::string, ByLocation, std::less<>> byRegion;  ///< with what moves them first
    std::vector<ControlledAgain> again;
  };

  [[nodiscard]] const ControlledPlaces& controlledPlaces() const;

  Derived<ControlledPlaces> controlledPlaces_;
  NameIndex chains_;
  NameIndex planes_;
};

}  // namespace KESTparse
