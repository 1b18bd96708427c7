#include "KESTparse/subsurface/IRkestSub.h"

#include <map>

#include "KESTparse/framework/Rules.h"
#include "KESTparse/subsurface/IRbndrSub.h"
#include "KESTparse/subsurface/IRgeomSub.h"
#include "KESTparse/subsurface/IRicSub.h"
#include "KESTparse/subsurface/IRmaterialSub.h"
#include "KESTparse/subsurface/IRoutputSub.h"
#include "KESTparse/subsurface/IRparamSub.h"
#include "KESTparse/subsurface/IRsoilSub.h"
#include "KESTparse/subsurface/IRsrcSub.h"
#include "KESTparse/subsurface/IRtimestepSub.h"
#include "KESTparse/subsurface/IRzoneSub.h"

namespace KESTparse {

void IRkestSub::getDescription(std::ostream& out) const {
  out << "This block includes all information for a subsurface LBM simulation.";
}

void IRkestSub::createSubBlocks() {
  subBlock<&Self::geom_ptr>("GEOMETRY").mandatory();
  subBlock<&Self::timestep_ptr>("TIMESTEP").mandatory();
  subBlock<&Self::param_ptr>("PARAMETER").mandatory();
  subBlock<&Self::initial_ptr>("INITIAL").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").repeatable();
  subBlock<&Self::material_ptr>("MATERIAL").mandatory();
  subBlock<&Self::source_ptr>("SOURCE");
  subBlock<&Self::out_ptr>("OUTPUT").mandatory();
}

void IRkestSub::createTags() {
  word<&Self::region_name>(
      "The name of the region has to be specified. It may be used for coupled simulations.")
      .mandatory();
  identifiedBy({"region_name"});
}

void IRkestSub::checkRules() {
  if (material_ptr == nullptr || geom_ptr == nullptr) {
    return;
  }
  // The second stage of the soil assignment. Of zones that share a name the first one counts.
  std::map<std::string_view, IRzoneSub*> zones;
  for (IRzoneSub* const zone : geom_ptr->zones_ptrV) {
    zones.emplace(zone->name, zone);
  }
  for (IRsoilSub* const soil : material_ptr->soil_ptrV) {
    if (const auto it = zones.find(soil->zone); it != zones.end()) {
      soil->zoneSub_ptr_ = it->second;
    }
    if (soil->zoneSub_ptr_ == nullptr) {
      static constexpr char text[] = "The soil refers to the zone '{}' which could not be found.";
      if (soil->hasTag("zone")) {
        report(Severity::error, *this, {about<&IRsoilSub::zone>(*soil)},
               {"unknown-zone", "there is no ZONE named '{0}' in this region",
                "name one of the ZONE blocks in GEOMETRY{1}, or define '{0}' there"},
               text, soil->zone, perhaps(soil->zone, geom_ptr->zones_ptrV, &IRzoneSub::name));
      } else {
        report(Severity::error, *this, {about(*soil)},
               {"soil-without-zone", "the soil does not tell in which zone it lies",
                "name in 'zone' one of the ZONE blocks in GEOMETRY"},
               text, soil->zone);
      }
    }
  }
}

}  // namespace KESTparse
